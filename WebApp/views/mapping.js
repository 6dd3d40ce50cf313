import { element, icon, notice } from "../dom.js";
import { text } from "../text.js";

/** The "Property mapping" card: `mapping` holds the file and the names. */
export function mappingView({ mapping, signal }) {
    const path = element("p", { id: "mapping-path" });
    const said = element("div", { id: "mapping-message", role: "status" });
    const names = element("ul", { id: "property-names", "aria-labelledby": "property-names-heading" });
    const noNames = element("p", { class: "quiet" }, text("mapping.noNames"));
    const button = (id, picture, label, onclick) =>
        element("button", { id, type: "button", class: "plain", onclick }, icon(picture), label);

    mapping.state.watch((now) => {
        path.textContent = now.path || text("mapping.noFile");
        path.classList.toggle("quiet", now.path === "");
        said.replaceChildren(...(now.message ? [notice("note", now.message)] : []));
        names.replaceChildren(...now.names.map((name) => element("li", {}, name)));
        noNames.hidden = now.names.length > 0;
    }, signal);

    return element(
        "section",
        { class: "card", id: "mapping", "aria-labelledby": "mapping-heading" },
        element("h2", { id: "mapping-heading" }, text("mapping.heading")),
        element("p", { class: "quiet" }, text("mapping.intro")),
        path,
        button("choose-mapping", "folder", text("mapping.choose"), () => mapping.choose()),
        said,
        element("h3", { id: "property-names-heading" }, text("mapping.names")),
        noNames,
        names,
        button("new-property", "plus", text("mapping.newName"), () => mapping.addName()),
    );
}
