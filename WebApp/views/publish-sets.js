import { element, icon, iconButton, notice } from "../dom.js";
import { text } from "../text.js";
import { publishTree } from "./publish-tree.js";

/** The choice of a publisher set and of its items. */
export function publishSetsView({ publishChoice, publishing, chosenProject, project, view, signal }) {
    const sets = element("select", { id: "publish-set", onchange: () => publishChoice.choose(sets.value) });
    const tree = publishTree((node, on) => publishChoice.tick(node, on));
    const refresh = iconButton("refresh", text("publish.refresh"), load, { id: "refresh-publish" });
    const said = element("div", { role: "status" });
    const field = element(
        "div",
        { class: "field" },
        element("label", { for: "publish-set" }, text("publish.set")),
        element("div", { class: "select" }, sets),
    );

    function load() {
        publishChoice.load(chosenProject.get() ? String(chosenProject.get().id) : null);
    }

    function show() {
        const now = publishChoice.state.get();
        const enabled = now.phase === "ready" && !publishing.isBusy();
        const guids = now.sets.map(({ guid }) => guid).join();
        if (sets.dataset.guids !== guids) {
            sets.dataset.guids = guids;
            sets.replaceChildren(
                ...now.sets.map(({ guid, title }) => element("option", { value: guid }, title)),
            );
        }
        sets.value = now.set?.guid ?? "";
        sets.disabled = !enabled;
        refresh.disabled = publishing.isBusy() || now.phase === "none";
        field.hidden = now.sets.length === 0;
        tree.view.hidden = now.tree.length === 0;
        tree.show(now.tree, now.items, enabled);
        said.replaceChildren(...messageFor(now, load));
    }

    const loadIfShown = () => view.get() === "publish" && load();
    chosenProject.watch(loadIfShown, signal);
    project.watch(loadIfShown, signal);
    view.watch(loadIfShown, signal);
    publishChoice.state.watch(show, signal);
    publishing.status.watch(show, signal);

    return element(
        "section",
        { class: "card" },
        element(
            "div",
            { class: "between" },
            element("h2", { id: "publish-heading" }, text("publish.heading")),
            refresh,
        ),
        field,
        said,
        tree.view,
    );
}

function messageFor({ phase, message, sets, tree }, load) {
    if (phase === "none") return [element("p", { class: "quiet" }, text("publish.noProject"))];
    if (phase === "failed") {
        const retry = element(
            "button",
            { type: "button", class: "link", onclick: load },
            text("publish.retry"),
        );
        return [notice("failed", message, retry)];
    }
    if (phase === "loading") {
        return tree.length ? [] : [element("p", { class: "quiet" }, text("publish.loading"))];
    }
    if (sets.length === 0) return [empty(text("publish.noSets"), text("publish.noSetsHelp"))];
    return tree.length ? [] : [empty(text("publish.emptySet"), text("publish.emptySetHelp"))];
}

function empty(title, help) {
    return element(
        "div",
        { class: "empty" },
        icon("publish"),
        element("p", {}, title),
        element("p", { class: "quiet" }, help),
    );
}
