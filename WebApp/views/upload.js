import { element } from "../dom.js";
import { text } from "../text.js";
import { fileNameField } from "./file-name-field.js";
import { uploadCard } from "./upload-card.js";

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

    function changed() {
        draft.set({ fileName: fileName.value(), onlyVisible: onlyVisible.checked });
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

    return uploadCard({
        texts: "upload",
        submitId: "upload-model",
        statusId: "upload-status",
        upload,
        place,
        fileName,
        fields: [
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
        ],
        request: () => ({ onlyVisible: onlyVisible.checked, useMapFile: mapping.applies() }),
        signal,
    });
}
