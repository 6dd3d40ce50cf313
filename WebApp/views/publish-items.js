import { element, icon } from "../dom.js";
import {
    details,
    folderOf,
    hasFile,
    itemsFor,
    mostAtOnce,
    nameProblems,
    withValues,
} from "../logic/publish-items.js";
import { foldersOf } from "../logic/publish-tree.js";
import { text } from "../text.js";
import { labelled, publishRow } from "./publish-row.js";
import { publishStatus } from "./publish-status.js";

/** The ticked items with what is filled in for them, and the buttons that publish them. */
export function publishItemsView(parts) {
    const { service, publishChoice, publishing, publishValues, chosenProject, place, view, signal } = parts;
    const rows = new Map();
    let folders = [];
    let paths = new Map();
    let pathsOf = null; // the tree whose paths they are
    let question = 0;

    const count = element("span", { class: "count" });
    const list = element("ul", {
        id: "publish-items",
        class: "rows",
        "aria-labelledby": "publish-items-heading",
    });
    const common = commonView((changes) =>
        publishChoice.edit([...publishChoice.state.get().items.keys()], changes),
    );
    const suggestions = element("div", { hidden: true });
    const button = (what, id, look, picture) => {
        const label = element("span");
        const attributes = { id, type: "button", class: look, onclick: () => start(what) };
        return { label, view: element("button", attributes, icon(picture), label) };
    };
    const buttons = {
        publish: button("publish", "publish-all", "primary wide", "publish"),
        prepare: button("prepare", "prepare-publish", "plain", "element"),
        upload: button("upload", "upload-publish", "plain", "upload"),
    };
    const hint = element("p", { class: "quiet hint", id: "publish-hint" });
    const anew = element("p", { class: "quiet" });
    const again = element(
        "details",
        { id: "publish-anew" },
        element("summary", {}, text("publish.anew")),
        anew,
    );

    function start(what) {
        if (buttons[what].view.disabled) return;
        const { projectId, set, items } = publishChoice.state.get();
        publishValues.set(withValues(publishValues.get(), [...items.values()]));
        suggest();
        publishing.start(what, { projectId, set, items, folderId: String(place.get()?.folder.id ?? "") });
    }

    function suggest() {
        const values = publishValues.get() ?? {};
        const options = (detail) => (values[detail] ?? []).map((value) => element("option", { value }));
        suggestions.replaceChildren(
            ...details.map((detail) => element("datalist", { id: `publish-${detail}` }, ...options(detail))),
        );
    }

    function show() {
        const { items, tree } = publishChoice.state.get();
        if (tree !== pathsOf) {
            pathsOf = tree;
            paths = foldersOf(tree);
        }
        const all = [...items.values()];
        const codes = nameProblems(all);
        const enabled = isReady() && !publishing.isBusy();
        const standard = place.get()?.folder;
        for (const key of rows.keys()) {
            if (!items.has(key)) rows.delete(key);
        }
        for (const item of all.slice(0, mostAtOnce)) {
            if (!rows.has(item.key)) {
                rows.set(
                    item.key,
                    publishRow(item.title, (changes) => publishChoice.edit([item.key], changes)),
                );
            }
            const [path, code] = [paths.get(item.key) ?? [], codes.get(item.key)];
            rows.get(item.key).show(item, { path, folders, standard, code, enabled });
        }
        const views = all.slice(0, mostAtOnce).map(({ key }) => rows.get(key).view);
        if (views.some((one, at) => one !== list.children[at]) || views.length !== list.children.length) {
            list.replaceChildren(...views);
        }
        count.textContent = all.length || "";
        common.show(all.length > 1, enabled);
        const made = all.find(hasFile);
        again.hidden = !made;
        anew.textContent = made ? text("publish.anewHelp", { folder: folderOf(made.filePath) }) : "";
        enable(all, codes, enabled);
    }

    const isReady = () => publishChoice.state.get().phase === "ready";

    function enable(all, codes, enabled) {
        const reason = reasonAgainst(all, codes);
        const placeless = !place.get() && all.some(({ folder }) => folder === "");
        for (const [what, { view: pressed, label }] of Object.entries(buttons)) {
            const wanted = itemsFor(what, all);
            const unplaced = placeless && what !== "prepare";
            pressed.disabled = !enabled || Boolean(reason) || unplaced || wanted.length === 0;
            const again = what !== "prepare" && all.length > 0 && all.every(({ state }) => state === "done");
            label.textContent = text(`publish.${what}${again ? "Again" : ""}`, { count: wanted.length });
        }
        hint.textContent = publishing.isBusy() ? "" : reason || (placeless ? text("upload.noFolder") : "");
    }

    async function loadFolders() {
        const asked = ++question;
        const project = chosenProject.get();
        if (!project || view.get() !== "publish") return;
        const answer = await service.folders(project.id).catch(() => null);
        if (asked !== question || !answer) return;
        folders = answer;
        const { projectId } = publishChoice.state.get();
        if (projectId === String(project.id) && !publishing.isBusy())
            publishChoice.keepFolders(folders.map(({ id }) => String(id)));
        show();
    }

    suggest();
    place.watch(loadFolders, signal);
    view.watch(loadFolders, signal);
    place.watch(show, signal);
    publishChoice.state.watch(show, signal);
    publishing.status.watch(show, signal);

    return element(
        "section",
        { class: "card" },
        element("h2", { id: "publish-items-heading" }, text("publish.items"), count),
        list,
        common.view,
        suggestions,
        element(
            "div",
            { class: "actions" },
            buttons.publish.view,
            element("div", { class: "line spread" }, buttons.prepare.view, buttons.upload.view),
            hint,
            publishStatus({ publishing, signal }),
            again,
        ),
    );
}

function reasonAgainst(all, codes) {
    if (all.length === 0) return text("publish.nothing");
    if (all.length > mostAtOnce) return text("publish.tooMany", { most: mostAtOnce });
    return [...codes.values()].some((code) => code !== "maybeSame") ? text("publish.badNames") : null;
}

/** Fields whose values go to all items. */
function commonView(edited) {
    const fields = details.map((detail) => [
        detail,
        element("input", {
            list: `publish-${detail}`,
            autocomplete: "off",
            "data-common": detail,
            oninput: ({ target }) => edited({ [detail]: target.value }),
        }),
    ]);
    const view = element(
        "details",
        { class: "common" },
        element("summary", {}, text("publish.common")),
        ...fields.map(([detail, field]) => labelled(text(`publish.${detail}`), field)),
    );
    return {
        view,
        show(shown, enabled) {
            view.hidden = !shown;
            for (const [, field] of fields) field.disabled = !enabled;
        },
    };
}
