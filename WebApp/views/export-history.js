import { element, icon } from "../dom.js";
import { formatDate } from "../logic/format.js";
import { language, text } from "../text.js";

const pictures = { model: "model", snapshot: "camera", plan: "plan", document: "publish" };

/** What was exported from this host into the chosen project, newest first. */
export function exportHistoryView({ exportHistory, chosenProject, view, signal }) {
    const list = element("ul", { id: "export-history", class: "rows", "aria-labelledby": "history-heading" });
    const none = element("p", { class: "quiet" }, text("history.empty"));

    const loadIfShown = () => view.get() === "publish" && exportHistory.load(idOf(chosenProject.get()));
    chosenProject.watch(loadIfShown, signal);
    view.watch(loadIfShown, signal);
    exportHistory.entries.watch((entries) => {
        list.replaceChildren(...entries.map(row));
        none.hidden = entries.length > 0;
    }, signal);

    return element(
        "section",
        { class: "card" },
        element("h2", { id: "history-heading" }, text("history.heading")),
        none,
        list,
    );
}

const idOf = (project) => (project ? String(project.id) : null);

function row({ time, kind, name, document }) {
    const known = Object.hasOwn(pictures, kind) ? kind : "document";
    const origin = [name, text(`history.${known}`), formatDate(time, language())];
    return element(
        "li",
        { "data-kind": kind },
        element("span", { class: "tile" }, icon(pictures[known])),
        element(
            "div",
            { class: "facts" },
            element("span", { class: "name" }, String(document ?? "")),
            element("span", { class: "quiet" }, origin.filter(Boolean).join(" · ")),
        ),
    );
}
