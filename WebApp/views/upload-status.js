import { element, iconButton, notice } from "../dom.js";
import { formatSize } from "../logic/format.js";
import { language, text } from "../text.js";
import { running } from "./running.js";

/** How an upload goes; data-state is idle, running, done or failed. */
export function uploadStatus({ id, upload, signal }) {
    const view = element("div", { id, role: "status", "aria-live": "polite" });
    upload.status.watch((now) => {
        view.dataset.state = now.state;
        view.replaceChildren(...content(now, upload, signal));
        if (now.state === "failed") view.scrollIntoView({ block: "nearest" });
    }, signal);
    return view;
}

function content(now, upload, signal) {
    switch (now.state) {
        case "running":
            return [
                running({
                    now,
                    status: upload.status,
                    said: text(`${upload.words}.running`),
                    help: text(`${upload.words}.runningHelp`),
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
