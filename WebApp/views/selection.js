import { element, icon } from "../dom.js";
import { text } from "../text.js";
import { elementList } from "./element-list.js";

/** The elements that are selected in the host, followed while the issues are shown. */
export function selectionView({ selection, view, signal }) {
    const count = element("span", { class: "count" });
    const all = element(
        "button",
        { id: "select-all", type: "button", class: "plain", onclick: () => selection.selectAll() },
        text("selection.all"),
    );
    const body = element("div", {});
    let listed = null;

    selection.state.watch(({ elements, shown }) => {
        if (elements !== listed) {
            listed = elements;
            count.textContent = elements.length || "";
            body.replaceChildren(...content(elements));
        }
        all.hidden = shown === null || elements.length < 2;
        for (const row of body.querySelectorAll("li")) {
            row.firstChild.setAttribute("aria-pressed", String(row.dataset.ifcGuid === shown));
        }
    }, signal);
    view.watch((name) => selection.follow(name === "issues"), signal);
    signal.addEventListener("abort", () => selection.follow(false));

    function content(elements) {
        if (elements.length > 0) {
            return elementList(elements, (ifcGuid) => selection.show(ifcGuid), {
                id: "selection-list",
                "aria-labelledby": "selection-heading",
            });
        }
        return [
            element(
                "div",
                { class: "empty" },
                icon("select"),
                element("p", {}, text("selection.empty")),
                element("p", { class: "quiet" }, text("selection.emptyHelp")),
            ),
        ];
    }

    return element(
        "section",
        { class: "card", id: "selection" },
        element(
            "div",
            { class: "between" },
            element("h2", { id: "selection-heading" }, text("selection.heading"), count),
            all,
        ),
        body,
    );
}
