import { element, icon } from "../dom.js";
import { planFormat, planFormats } from "../logic/plan-formats.js";
import { text } from "../text.js";
import { fileNameField } from "./file-name-field.js";
import { uploadStatus } from "./upload-status.js";

/** The "Plan document" card: `planDraft` holds { fileName, format }, `planUpload` does the work. */
export function plansView({ planUpload, place, planDraft, signal }) {
    const format = element(
        "select",
        { id: "plan-format", onchange: changed },
        ...planFormats.map(({ id, name }) => element("option", { value: id }, name)),
    );
    const help = element("p", { id: "plan-format-help", class: "quiet" });
    format.setAttribute("aria-describedby", help.id);
    const fileName = fileNameField({ id: "plan-name", changed });
    const submit = element(
        "button",
        { id: "upload-plan", class: "primary wide" },
        icon("upload"),
        text("plans.submit"),
    );
    const hint = element("p", { class: "quiet hint" });

    function changed() {
        planDraft.set({ fileName: fileName.value(), format: format.value });
    }

    function start(event) {
        event.preventDefault();
        const chosen = place.get();
        if (submit.disabled || !chosen) return;
        const name = fileName.usable();
        if (name === null) return;
        planUpload.start({
            projectId: String(chosen.project.id),
            folderId: String(chosen.folder.id),
            fileName: name,
            format: format.value,
        });
    }

    function enable() {
        const running = planUpload.status.get().state === "running";
        submit.disabled = running || !place.get();
        hint.textContent = running || place.get() ? "" : text("upload.noFolder");
    }

    planDraft.watch((filled) => {
        const { id, extension } = planFormat(filled.format);
        format.value = id;
        help.textContent = text(`plans.help.${id}`);
        fileName.setExtension(extension);
        fileName.setValue(filled.fileName);
    }, signal);
    place.watch(enable, signal);
    planUpload.status.watch(enable, signal);

    return element(
        "form",
        { class: "card", novalidate: true, "aria-labelledby": "plans-heading", onsubmit: start },
        element("h2", { id: "plans-heading" }, text("plans.heading")),
        element("p", { class: "quiet" }, text("plans.intro")),
        element("label", { for: "plan-format" }, text("plans.format")),
        element("div", { class: "select" }, format),
        help,
        ...fileName.view,
        submit,
        hint,
        uploadStatus({ id: "plan-status", upload: planUpload, signal }),
    );
}
