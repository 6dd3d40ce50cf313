import { element, icon } from "../dom.js";
import { text } from "../text.js";
import { fileNameField } from "./file-name-field.js";
import { uploadStatus } from "./upload-status.js";

/** The "Upload model" card: `draft` holds { fileName, onlyVisible }, `upload` does the work, with the `mapping`. */
export function uploadView({ upload, project, place, draft, mapping, signal }) {
    const model = element("p", { class: "quiet" });
    const fileName = fileNameField({ id: "file-name", changed });
    fileName.setExtension("ifc");
    const onlyVisible = element("input", { id: "only-visible", type: "checkbox", onchange: changed });
    const useMapFile = element("input", {
        id: "use-map-file",
        type: "checkbox",
        onchange: () => mapping.apply(useMapFile.checked),
    });
    const mapped = element("label", { class: "check" }, useMapFile, element("span", {}, text("upload.useMapFile")));
    const submit = element(
        "button",
        { id: "upload-model", class: "primary wide" },
        icon("upload"),
        text("upload.submit"),
    );
    const hint = element("p", { class: "quiet hint" });

    function changed() {
        draft.set({ fileName: fileName.value(), onlyVisible: onlyVisible.checked });
    }

    function start(event) {
        event.preventDefault();
        const chosen = place.get();
        if (submit.disabled || !chosen) return;
        const name = fileName.usable();
        if (name === null) return;
        upload.start({
            projectId: String(chosen.project.id),
            folderId: String(chosen.folder.id),
            fileName: name,
            onlyVisible: onlyVisible.checked,
            useMapFile: mapping.applies(),
        });
    }

    function enable() {
        const running = upload.status.get().state === "running";
        submit.disabled = running || !place.get();
        hint.textContent = running || place.get() ? "" : text("upload.noFolder");
    }

    draft.watch((filled) => {
        fileName.setValue(filled.fileName);
        onlyVisible.checked = filled.onlyVisible;
    }, signal);
    mapping.state.watch((now) => {
        mapped.hidden = now.path === "";
        useMapFile.checked = now.applied;
    }, signal);
    project.watch((name) => {
        model.textContent = name ? text("upload.model", { project: name }) : text("upload.noModel");
    }, signal);
    place.watch(enable, signal);
    upload.status.watch(enable, signal);

    return element(
        "form",
        { class: "card", novalidate: true, "aria-labelledby": "upload-heading", onsubmit: start },
        element("h2", { id: "upload-heading" }, text("upload.heading")),
        model,
        ...fileName.view,
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
        mapped,
        submit,
        hint,
        uploadStatus({ id: "upload-status", upload, signal }),
    );
}
