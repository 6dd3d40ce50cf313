import { element, icon } from "../dom.js";
import { labelOf } from "../logic/elements.js";
import { text } from "../text.js";

const longest = 200;

/**
 * Elements by name; a click on one calls show(ifcGuid), which tells whether the model has it (null: no clicks).
 * Of a very long list the first ones are shown, and how many there are besides.
 */
export function elementList(elements, show, attributes = {}) {
    const said = element("p", { class: "problem", role: "alert" });
    const list = element("ul", { class: "elements", ...attributes }, ...elements.slice(0, longest).map(row));
    const more = elements.length - longest;
    return [
        list,
        more > 0 ? element("p", { class: "quiet more" }, text("elements.more", { count: more })) : "",
        said,
    ];

    function row(shown) {
        const name = labelOf(shown);
        const button = element(
            "button",
            {
                type: "button",
                disabled: !show,
                title: show ? text("elements.show", { name }) : name,
                onclick: () => choose(shown, name),
            },
            icon("element"),
            element("span", { class: "name" }, name),
        );
        return element("li", { "data-ifc-guid": shown.ifcGuid }, button);
    }

    async function choose({ ifcGuid }, name) {
        said.textContent = "";
        if (!(await show(ifcGuid))) said.textContent = text("elements.missing", { name });
    }
}
