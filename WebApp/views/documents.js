import { element, icon, iconButton, notice } from "../dom.js";
import { formatDate, formatSize } from "../logic/format.js";
import { language, text } from "../text.js";

/** The documents of the chosen folder, kept up to date with the uploads of this page. */
export function documentsView({ service, place, upload, planUpload, publishing, signal }) {
    let question = 0;
    let folderId = null;

    const count = element("span", { class: "count" });
    const refresh = iconButton("refresh", text("documents.refresh"), () => load(), {
        id: "refresh-documents",
    });
    const said = element("div", { role: "status" });
    const list = element("ul", { id: "documents", class: "rows", "aria-labelledby": "documents-heading" });

    function show(documents) {
        const fresh = [upload, planUpload].map(({ status }) => status.get().document?.id);
        count.textContent = documents.length || "";
        list.replaceChildren(...documents.map((document) => row(document, service, fresh.includes(document.id))));
        said.replaceChildren(
            ...(documents.length
                ? []
                : [empty("model", text("documents.empty"), text("documents.emptyHelp"))]),
        );
    }

    async function load() {
        const asked = ++question;
        refresh.disabled = folderId === null;
        if (folderId === null) {
            show([]);
            said.replaceChildren(empty("folder", text("documents.noFolder")));
            return;
        }
        list.setAttribute("aria-busy", "true");
        if (!list.hasChildNodes())
            said.replaceChildren(element("p", { class: "quiet" }, text("documents.loading")));
        try {
            const documents = await service.documents(folderId);
            if (asked === question) show(documents);
        } catch (error) {
            if (asked !== question) return;
            const retry = element(
                "button",
                { type: "button", class: "link", onclick: load },
                text("documents.retry"),
            );
            said.replaceChildren(notice("failed", error.message, retry));
        } finally {
            if (asked === question) list.removeAttribute("aria-busy");
        }
    }

    place.watch((chosen) => {
        const next = chosen?.folder.id ?? null;
        if (next !== folderId) list.replaceChildren();
        folderId = next;
        load();
    }, signal);
    for (const { status } of [upload, planUpload, publishing]) {
        let former = status.get();
        status.watch((now) => {
            const hasNew = now.state === "done" || former.state === "uploading";
            if (now !== former && hasNew) load();
            former = now;
        }, signal);
    }

    return element(
        "section",
        { class: "card" },
        element(
            "div",
            { class: "between" },
            element("h2", { id: "documents-heading" }, text("documents.heading"), count),
            refresh,
        ),
        said,
        list,
    );
}

function empty(picture, title, help) {
    return element(
        "div",
        { class: "empty" },
        icon(picture),
        element("p", {}, title),
        help ? element("p", { class: "quiet" }, help) : null,
    );
}

function row(document, service, isFresh) {
    const { id, name, version, size, created, author } = document;
    const facts = [version ? text("documents.version", { version }) : "", formatSize(size, language())];
    const origin = [formatDate(created, language()), author ? text("documents.by", { author }) : ""];
    const line = (parts) => element("span", { class: "quiet" }, parts.filter(Boolean).join(" · "));
    const problem = element("p", { class: "problem", role: "alert" });
    const download = iconButton("download", text("documents.download", { name }), () => save());

    async function save() {
        download.disabled = true;
        problem.textContent = "";
        download.setAttribute("aria-label", text("documents.downloading", { name }));
        download.classList.add("busy");
        try {
            saveAs(await service.content(id), name);
        } catch (error) {
            problem.textContent = error.message;
        } finally {
            download.disabled = false;
            download.setAttribute("aria-label", text("documents.download", { name }));
            download.classList.remove("busy");
        }
    }

    return element(
        "li",
        { "data-document-id": id, class: isFresh ? "fresh" : null },
        element("span", { class: "tile" }, icon(/\.ifc$/i.test(name) ? "model" : "plan")),
        element(
            "div",
            { class: "facts" },
            element("span", { class: "name", title: name }, name),
            line(facts),
            line(origin),
            problem,
        ),
        download,
    );
}

function saveAs(blob, name) {
    const address = URL.createObjectURL(blob);
    element("a", { href: address, download: name }).click();
    // The browser reads the content after the click; a minute is ample to begin.
    setTimeout(() => URL.revokeObjectURL(address), 60000);
}
