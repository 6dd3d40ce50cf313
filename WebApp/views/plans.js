import { element } from "../dom.js";
import { planFormat, planFormats } from "../logic/plan-formats.js";
import { text } from "../text.js";
import { fileNameField } from "./file-name-field.js";
import { uploadCard } from "./upload-card.js";

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

    function changed() {
        planDraft.set({ fileName: fileName.value(), format: format.value });
    }

    planDraft.watch((filled) => {
        const { id, extension } = planFormat(filled.format);
        format.value = id;
        help.textContent = text(`plans.help.${id}`);
        fileName.setExtension(extension);
        fileName.setValue(filled.fileName);
    }, signal);

    return uploadCard({
        texts: "plans",
        submitId: "upload-plan",
        statusId: "plan-status",
        upload: planUpload,
        place,
        fileName,
        fields: [
            element("p", { class: "quiet" }, text("plans.intro")),
            element("label", { for: "plan-format" }, text("plans.format")),
            element("div", { class: "select" }, format),
            help,
            ...fileName.view,
        ],
        request: () => ({ format: format.value }),
        signal,
    });
}
