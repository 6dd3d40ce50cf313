import { element, iconButton, notice } from "../dom.js";
import { text } from "../text.js";

const hintDelay = 4000;

/** How taking or opening a viewpoint of the issue goes; data-state is idle, working, done or failed. */
export function viewpointStatus({ viewpoints, topicId, signal }) {
    const view = element("div", { id: "viewpoint-status", role: "status", "aria-live": "polite" });
    viewpoints.status.watch((now) => {
        const mine = now.topicId === topicId;
        view.dataset.state = mine ? now.state : "idle";
        view.replaceChildren(...(mine ? content(now) : []));
        if (mine && now.state === "failed") view.scrollIntoView({ block: "nearest" });
    }, signal);
    return view;

    function content({ state, step, message }) {
        if (state === "working") return [working(step)];
        if (state === "done") {
            return [closable(notice("done", element("strong", {}, text(`viewpoints.${step}`))))];
        }
        const title = element("strong", {}, text("viewpoints.failed"));
        return [closable(notice("failed", title, message))];
    }

    function working(step) {
        const hint = element("p", { class: "quiet hint" });
        const cancel = element(
            "button",
            {
                id: "cancel-viewpoint",
                type: "button",
                class: "link",
                onclick: () => viewpoints.dismiss(),
            },
            text("viewpoints.cancel"),
        );
        if (step === "snapshot") {
            setTimeout(() => (hint.textContent = text("viewpoints.snapshotHint")), hintDelay);
        }
        return element(
            "div",
            { class: "running" },
            element("div", { class: "between" }, element("span", {}, text(`viewpoints.${step}`)), cancel),
            element("div", { class: "bar" }),
            hint,
        );
    }

    function closable(box) {
        box.append(iconButton("close", text("upload.dismiss"), () => viewpoints.dismiss()));
        return box;
    }
}
