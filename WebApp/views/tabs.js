import { element, icon } from "../dom.js";
import { text } from "../text.js";

const pictures = {
    documents: "folder",
    plans: "plan",
    mapping: "mapping",
    publish: "publish",
    models: "model",
    issues: "issue",
};

/** The names of the page's views. */
export const views = Object.keys(pictures);

/** The choice between the page's views; `view` is the name of the shown one. */
export function tabsView({ view, signal }) {
    const tab = (name) =>
        element(
            "button",
            { id: `tab-${name}`, type: "button", onclick: () => view.set(name) },
            icon(pictures[name]),
            text(`tabs.${name}`),
        );
    const tabs = Object.fromEntries(views.map((name) => [name, tab(name)]));
    view.watch((shown) => {
        for (const [name, button] of Object.entries(tabs)) {
            if (name === shown) button.setAttribute("aria-current", "page");
            else button.removeAttribute("aria-current");
        }
    }, signal);
    return element("nav", { class: "tabs", "aria-label": text("tabs.label") }, ...Object.values(tabs));
}
