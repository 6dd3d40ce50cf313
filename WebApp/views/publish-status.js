import { element, iconButton, notice } from "../dom.js";
import { text } from "../text.js";
import { running } from "./running.js";

/** How the publishing goes. */
export function publishStatus({ publishing, signal }) {
    const status = element("div", { id: "publish-status", role: "status", "aria-live": "polite" });
    publishing.status.watch((now) => {
        status.dataset.state = now.state;
        status.replaceChildren(...content(now, publishing, signal));
        if (now.state === "failed") status.scrollIntoView({ block: "nearest" });
    }, signal);
    return status;
}

function content(now, publishing, signal) {
    switch (now.state) {
        case "preparing":
        case "uploading":
            return [
                running({
                    now,
                    status: publishing.status,
                    said: text(`publish.${now.state}`, { count: now.count }),
                    help: text(`publish.${now.state}Help`),
                    stop: () => publishing.stopWaiting(),
                    signal,
                }),
            ];
        case "done": {
            const said = "uploaded" in now ? text("publish.uploaded", { count: now.uploaded }) : null;
            return [
                closable(
                    notice(
                        "done",
                        element("strong", {}, said ?? text("publish.prepared", { count: now.prepared })),
                    ),
                    publishing,
                ),
            ];
        }
        case "failed":
            return [
                closable(
                    notice("failed", element("strong", {}, text("publish.failed")), now.message),
                    publishing,
                ),
            ];
        default:
            return [];
    }
}

function closable(box, publishing) {
    box.append(iconButton("close", text("upload.dismiss"), () => publishing.forget()));
    return box;
}
