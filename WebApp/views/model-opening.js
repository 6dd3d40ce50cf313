import { element, icon, iconButton, notice } from "../dom.js";
import { formatList } from "../logic/format.js";
import { language, text } from "../text.js";
import { running } from "./running.js";

/**
 * The button that opens the ticked models, and how that goes. choose(rows, any) tells what is ticked,
 * in order, and whether there are models at all.
 */
export function modelOpeningView({ modelWork, signal }) {
    let ticked = [];
    let anyModels = false;

    const target = element("select", { id: "merge-into", onchange: describe });
    const order = element("p", { class: "quiet" });
    const merging = element(
        "div",
        { hidden: true },
        element(
            "div",
            { class: "field" },
            element("label", { for: "merge-into" }, text("models.mergeInto")),
            element("div", { class: "select" }, target),
        ),
        order,
    );
    const label = element("span");
    const open = element(
        "button",
        { id: "open-models", type: "button", class: "primary wide", onclick: start },
        icon("model"),
        label,
    );
    const status = element("div", { id: "models-status", role: "status", "aria-live": "polite" });

    /** The ticked ones in their order, but the one that takes the others last. */
    function ordered() {
        const last = ticked.find(({ key }) => key === target.value) ?? ticked.at(-1);
        return [...ticked.filter((row) => row !== last), last];
    }

    function start() {
        if (open.disabled) return;
        modelWork.start(ordered().map(({ model, version }) => ({ model, version: version() })));
    }

    function describe() {
        if (ticked.length < 2) return;
        const names = ordered().map(nameOf);
        const into = names.pop();
        order.textContent = text(names.length === 1 ? "models.mergesOne" : "models.mergesMany", {
            names: formatList(names, language()),
            into,
        });
    }

    // Models of one name are told apart by their folders.
    function nameOf({ model }) {
        const alike = ticked.filter((row) => row.model.name === model.name);
        return alike.length > 1 ? `${model.name} (${model.folder.name})` : model.name;
    }

    function enable() {
        open.disabled = ticked.length === 0 || modelWork.isBusy();
        view.hidden = !anyModels && modelWork.status.get().state === "idle";
        label.textContent = ticked.length
            ? text("models.openCount", { count: ticked.length })
            : text("models.open");
    }

    function choose(rows, any) {
        // Only a choice made on purpose stays when others are ticked.
        const former = target.value;
        const wasLast = former === "" || former === ticked.at(-1)?.key;
        ticked = rows;
        anyModels = any;
        target.replaceChildren(...rows.map((row) => element("option", { value: row.key }, nameOf(row))));
        const stays = !wasLast && rows.some(({ key }) => key === former);
        if (rows.length) target.value = stays ? former : rows.at(-1).key;
        merging.hidden = rows.length < 2;
        describe();
        enable();
    }

    const replaces = element("p", { class: "quiet" }, text("models.replaces"));
    const view = element("div", { class: "actions" }, merging, open, replaces, status);

    modelWork.status.watch((now) => {
        enable();
        status.dataset.state = now.state;
        status.replaceChildren(...statusContent(now, modelWork, signal));
        if (now.state === "failed") status.scrollIntoView({ block: "nearest" });
    }, signal);

    return { view, choose };
}

function statusContent(now, modelWork, signal) {
    switch (now.state) {
        case "downloading":
        case "opening":
            return [progress(now, modelWork, signal)];
        case "done":
            return [closable(done(now.names), modelWork)];
        case "failed":
            return [
                closable(
                    notice("failed", element("strong", {}, text("models.failed")), now.message),
                    modelWork,
                ),
            ];
        default:
            return [];
    }
}

function progress(now, modelWork, signal) {
    const { state, resumed } = now;
    const canStop = state === "downloading" || resumed;
    return running({
        now,
        status: modelWork.status,
        said: text(`models.${state}`),
        help: text(`models.${state}Help`),
        stop: canStop ? () => modelWork.stopWaiting() : null,
        signal,
    });
}

function done(names) {
    const others = names.slice(0, -1);
    const merged = text(others.length === 1 ? "models.mergedOne" : "models.mergedMany", {
        names: formatList(others, language()),
    });
    return notice(
        "done",
        element("strong", {}, text("models.done")),
        element("span", { class: "name" }, names.at(-1)),
        others.length ? element("span", { class: "quiet" }, merged) : null,
    );
}

function closable(box, modelWork) {
    box.append(iconButton("close", text("upload.dismiss"), () => modelWork.forget()));
    return box;
}
