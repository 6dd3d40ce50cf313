import { element, icon, iconButton, notice } from "../dom.js";
import { checkFileName } from "../logic/file-name.js";
import { formatSize } from "../logic/format.js";
import { language, text } from "../text.js";
import { running } from "./running.js";

/** The "Upload model" card: `draft` holds { fileName, onlyVisible }, `upload` does the work. */
export function uploadView({ upload, project, place, draft, signal }) {
    const model = element("p", { class: "quiet" });
    const fileName = element("input", {
        id: "file-name",
        autocomplete: "off",
        spellcheck: "false",
        "aria-describedby": "file-name-problem",
        oninput: changed,
        onchange: tidy,
    });
    const problem = element("p", { class: "problem", id: "file-name-problem", role: "alert" });
    const onlyVisible = element("input", { id: "only-visible", type: "checkbox", onchange: changed });
    const submit = element(
        "button",
        { id: "upload-model", class: "primary wide" },
        icon("upload"),
        text("upload.submit"),
    );
    const hint = element("p", { class: "quiet hint" });
    const status = element("div", { id: "upload-status", role: "status", "aria-live": "polite" });

    function changed() {
        draft.set({ fileName: fileName.value, onlyVisible: onlyVisible.checked });
        showProblem(fileName.value.trim() ? checkFileName(fileName.value).problem : null);
    }

    function tidy() {
        fileName.value = checkFileName(fileName.value).name;
        changed();
    }

    function showProblem(code) {
        problem.textContent = code ? text(`fileName.${code}`) : "";
        fileName.setAttribute("aria-invalid", String(Boolean(code)));
    }

    function start(event) {
        event.preventDefault();
        const chosen = place.get();
        if (submit.disabled || !chosen) return;
        tidy();
        const checked = checkFileName(fileName.value);
        showProblem(checked.problem);
        if (checked.problem) {
            fileName.focus();
            return;
        }
        upload.start({
            projectId: String(chosen.project.id),
            folderId: String(chosen.folder.id),
            fileName: checked.name,
            onlyVisible: onlyVisible.checked,
        });
    }

    function enable() {
        const running = upload.status.get().state === "running";
        submit.disabled = running || !place.get();
        hint.textContent = running || place.get() ? "" : text("upload.noFolder");
    }

    draft.watch((filled) => {
        if (fileName.value !== filled.fileName) {
            fileName.value = filled.fileName;
            showProblem(null);
        }
        onlyVisible.checked = filled.onlyVisible;
    }, signal);
    project.watch((name) => {
        model.textContent = name ? text("upload.model", { project: name }) : text("upload.noModel");
    }, signal);
    place.watch(enable, signal);
    upload.status.watch((now) => {
        enable();
        status.dataset.state = now.state;
        status.replaceChildren(...statusContent(now, upload, signal));
    }, signal);

    return element(
        "form",
        { class: "card", novalidate: true, "aria-labelledby": "upload-heading", onsubmit: start },
        element("h2", { id: "upload-heading" }, text("upload.heading")),
        model,
        element("label", { for: "file-name" }, text("upload.fileName")),
        element("div", { class: "suffixed" }, fileName, element("span", { "aria-hidden": "true" }, ".ifc")),
        problem,
        element(
            "label",
            { class: "check" },
            onlyVisible,
            element(
                "span",
                {},
                text("upload.onlyVisible"),
                element("small", {}, text("upload.onlyVisibleHelp")),
            ),
        ),
        submit,
        hint,
        status,
    );
}

function statusContent(now, upload, signal) {
    switch (now.state) {
        case "running":
            return [
                running({
                    now,
                    status: upload.status,
                    said: text("upload.running"),
                    help: text("upload.runningHelp"),
                    stop: () => upload.stopWaiting(),
                    signal,
                }),
            ];
        case "done":
            return [closable(done(now.document), upload)];
        case "failed":
            return [
                closable(
                    notice("failed", element("strong", {}, text("upload.notDone")), now.message),
                    upload,
                ),
            ];
        default:
            return [];
    }
}

function done({ name, size, version }) {
    const facts = [version ? text("documents.version", { version }) : "", formatSize(size, language())];
    return notice(
        "done",
        element("strong", {}, text("upload.done")),
        element("span", { class: "name" }, name),
        element("span", { class: "quiet" }, facts.filter(Boolean).join(" · ")),
    );
}

function closable(box, upload) {
    box.append(iconButton("close", text("upload.dismiss"), () => upload.forget()));
    return box;
}
