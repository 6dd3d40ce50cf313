import { element, icon } from "../dom.js";
import { text } from "../text.js";

/** The choice between the page's views; `view` is "documents" or "issues". */
export function tabsView({ view, signal }) {
    const tab = (name, picture) =>
        element(
            "button",
            { id: `tab-${name}`, type: "button", onclick: () => view.set(name) },
            icon(picture),
            text(`tabs.${name}`),
        );
    const tabs = { documents: tab("documents", "model"), issues: tab("issues", "issue") };
    view.watch((shown) => {
        for (const [name, button] of Object.entries(tabs)) {
            if (name === shown) button.setAttribute("aria-current", "page");
            else button.removeAttribute("aria-current");
        }
    }, signal);
    return element("nav", { class: "tabs", "aria-label": text("tabs.label") }, ...Object.values(tabs));
}
