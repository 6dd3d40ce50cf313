import { element, icon } from "../dom.js";
import { text } from "../text.js";
import { uploadStatus } from "./upload-status.js";

/**
 * A card that exports something and uploads it into the chosen place: its fields, the button and the state of `upload`.
 * `texts` is the first part of its texts' names; `request()` gives what `upload` starts with besides the place and the
 * name of the file.
 */
export function uploadCard({ texts, submitId, statusId, upload, place, fileName, fields, request, signal }) {
    const submit = element("button", { id: submitId, class: "primary wide" }, icon("upload"), text(`${texts}.submit`));
    const hint = element("p", { class: "quiet hint" });

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
            ...request(),
        });
    }

    function enable() {
        const running = upload.status.get().state === "running";
        submit.disabled = running || !place.get();
        hint.textContent = running || place.get() ? "" : text("upload.noFolder");
    }

    place.watch(enable, signal);
    upload.status.watch(enable, signal);

    const headingId = `${texts}-heading`;
    return element(
        "form",
        { class: "card", novalidate: true, "aria-labelledby": headingId, onsubmit: start },
        element("h2", { id: headingId }, text(`${texts}.heading`)),
        ...fields,
        submit,
        hint,
        uploadStatus({ id: statusId, upload, signal }),
    );
}
