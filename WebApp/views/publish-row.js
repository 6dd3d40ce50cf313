import { element } from "../dom.js";
import { details, documentName, hasFile } from "../logic/publish-items.js";
import { text } from "../text.js";

/** What is filled in for one ticked item, and what became of it. edited(changes) is told of each change. */
export function publishRow(title, edited) {
    const name = input("docName");
    const folder = element("select", {
        "data-field": "folder",
        "aria-label": text("publish.folderOf", { title }),
        onchange: () => edited({ folder: folder.value }),
    });
    const origin = element("span", { class: "quiet" });
    const badge = element("span", { class: "badge" });
    const problem = element("p", { class: "problem" });
    const result = element("p", { class: "quiet" });
    const file = element("p", { class: "quiet" });
    const summary = element("summary", {});
    const fields = details.map((detail) => [detail, input(detail)]);
    const more = element(
        "details",
        {},
        summary,
        ...fields.map(([detail, field]) => labelled(text(`publish.${detail}`), field)),
        file,
    );
    const view = element(
        "li",
        {},
        element(
            "div",
            { class: "between" },
            element("span", {}, element("span", { class: "name" }, title), " ", origin),
            badge,
        ),
        element("div", { class: "pair" }, name, element("div", { class: "select" }, folder)),
        problem,
        result,
        more,
    );

    function input(field) {
        return element("input", {
            "data-field": field,
            "aria-label": text("publish.fieldOf", { field: text(`publish.${field}`), title }),
            list: details.includes(field) ? `publish-${field}` : null,
            autocomplete: "off",
            oninput: ({ target }) => edited({ [field]: target.value }),
        });
    }

    function show(item, { path, folders, standard, code, enabled }) {
        const fallback = text("publish.standardFolder");
        fillFolders(folder, folders, fallback, item.folder);
        for (const [field, control] of [["docName", name], ...fields]) {
            if (control.value !== item[field]) control.value = item[field];
        }
        for (const control of [name, folder, ...fields.map(([, field]) => field)])
            control.disabled = !enabled;
        view.dataset.publishKey = item.key;
        view.dataset.state = item.state;
        badge.textContent = item.state === "chosen" ? "" : text(`publish.state.${item.state}`);
        const wrong = code && code !== "maybeSame";
        name.setAttribute("aria-invalid", String(Boolean(wrong)));
        problem.textContent = wrong ? nameMessage(code) : (item.message ?? "");
        const into = folders.find(({ id }) => String(id) === item.folder) ?? standard;
        const isDone = item.state === "done";
        const stored = () =>
            text("publish.stored", { document: documentName(item), folder: into?.name ?? "" });
        result.textContent = isDone ? stored() : code === "maybeSame" ? text("publish.maybeSame") : "";
        origin.textContent = path.join(" › ");
        if (isDone) view.dataset.documentId = item.documentId;
        else delete view.dataset.documentId;
        const filled = details.map((detail) => item[detail].trim()).filter(Boolean);
        summary.textContent = filled.join(" · ") || text("publish.details");
        file.textContent = hasFile(item) ? text("publish.file", { path: item.filePath }) : "";
    }

    return { view, show };
}

const nameMessage = (code) => text(code === "same" ? "publish.same" : `fileName.${code}`);

export function labelled(label, field) {
    return element("label", {}, label, field);
}

function fillFolders(select, folders, fallback, chosen) {
    const wanted = JSON.stringify([fallback, folders]);
    if (select.dataset.filled !== wanted) {
        select.dataset.filled = wanted;
        select.replaceChildren(
            element("option", { value: "" }, fallback),
            ...folders.map(({ id, name }) => element("option", { value: id }, name)),
        );
    }
    select.value = folders.some(({ id }) => String(id) === chosen) ? chosen : "";
}
