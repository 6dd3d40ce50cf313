import { asciiJson, readJson } from "./logic/ascii-json.js";
import { keptOf, newItem, readSelection } from "./logic/publish-items.js";
import { leavesOf, withTick } from "./logic/publish-tree.js";
import { text } from "./text.js";
import { Value } from "./value.js";

const nothing = { phase: "none", projectId: null, sets: [], set: null, tree: [], items: new Map() };
const nameOf = (projectId, guid) => JSON.stringify([projectId, guid]);

/**
 * What is picked of the host's publisher sets for a project of the service. It outlives views; the host remembers
 * it for longer.
 */
export class PublishChoice {
    /**
     * { phase, projectId, sets, set, tree, items, message }: phase is "none", "loading", "ready" or "failed", and
     * only then there is a message; set is one of the sets or null; items is a Map of the ticked items by their
     * keys, in the tree's order, see logic/publish-items.js.
     */
    state = new Value(nothing);

    #question = 0;
    #items = new Map(); // of every project and set seen so far
    #sets = new Map(); // the chosen set's guid, by project
    #timer = null;

    constructor(host, delay = 300) {
        this.host = host;
        this.delay = delay;
    }

    /** Asks the host for its sets, and for what was picked for the project if that is not known yet. */
    async load(projectId) {
        const asked = ++this.#question;
        if (!projectId) {
            this.state.set(nothing);
            return;
        }
        const before = this.state.get();
        const shown = before.projectId === projectId ? before : { ...nothing, projectId };
        this.state.set({ ...shown, phase: "loading" });
        try {
            const sets = readJson(await this.host.publishSets());
            if (!Array.isArray(sets)) throw new Error(text("publish.noHeaders"));
            if (!this.#sets.has(projectId)) await this.#recall(projectId);
            if (asked !== this.#question) return;
            const set = sets.find(({ guid }) => guid === this.#sets.get(projectId)) ?? sets[0] ?? null;
            await this.#show({ projectId, sets, set }, asked);
        } catch (error) {
            if (asked === this.#question) this.#change({ phase: "failed", message: messageOf(error) });
        }
    }

    /** Goes over to the set of this guid. */
    async choose(guid) {
        const asked = ++this.#question;
        const { projectId, sets } = this.state.get();
        const set = sets.find((one) => one.guid === guid) ?? null;
        this.#sets.set(projectId, guid);
        this.#change({ phase: "loading", set, tree: [], items: new Map() });
        try {
            await this.#show({ projectId, sets, set }, asked);
            if (asked === this.#question) this.#rememberSoon();
        } catch (error) {
            if (asked === this.#question) this.#change({ phase: "failed", message: messageOf(error) });
        }
    }

    /** Ticks or clears a node of the tree with all that is below it. */
    tick(node, on) {
        const { tree, items } = this.state.get();
        const ticked = withTick(new Set(items.keys()), node, on);
        const leaves = leavesOf(tree).filter(({ key }) => ticked.has(key));
        this.#keep(new Map(leaves.map((leaf) => [leaf.key, items.get(leaf.key) ?? newItem(leaf, "")])));
    }

    /** Changes what was filled in for these items. */
    edit(keys, changes) {
        const { items } = this.state.get();
        const anew = "docName" in changes || "folder" in changes;
        for (const key of keys) {
            const item = { ...items.get(key), ...changes };
            if (anew) Object.assign(item, { state: item.ext ? "prepared" : "chosen", message: null });
            items.set(key, item);
        }
        this.#keep(items);
    }

    /** Items whose folder is gone go where the others go by default. */
    keepFolders(folderIds) {
        const lost = [...this.state.get().items.values()].filter(
            ({ folder }) => folder !== "" && !folderIds.includes(folder),
        );
        if (lost.length)
            this.edit(
                lost.map(({ key }) => key),
                { folder: "" },
            );
    }

    /** Takes the items of a publishing run, whatever else was known of them. */
    adopt({ projectId, set, items }) {
        this.#sets.set(projectId, set.guid);
        this.#items.set(nameOf(projectId, set.guid), items);
    }

    /** Takes changes that a publishing run made to its items: [key, changes]. */
    update(items, changes) {
        for (const [key, change] of changes) {
            if (items.has(key)) items.set(key, { ...items.get(key), ...change });
        }
        this.#change({});
    }

    /** Has the host remember a run's selection now, and keep it for good if `saved`. */
    async remember({ projectId, set, items }, saved) {
        clearTimeout(this.#timer);
        const publishItems = asciiJson([...items.values()].map(keptOf));
        await this.host.rememberPublishSelection({ projectId, publishSet: set.guid, publishItems });
        if (saved) await this.host.savePublishSelection();
        return publishItems;
    }

    /** Another person may sign in. */
    forget() {
        this.#question += 1;
        clearTimeout(this.#timer);
        this.#items.clear();
        this.#sets.clear();
        this.state.set(nothing);
    }

    async #recall(projectId) {
        await this.host.loadPublishSelection(projectId);
        const selection = readSelection(await this.host.publishSelection(projectId));
        if (!selection || this.#sets.has(projectId)) return;
        const items = new Map(selection.items.map((item) => [item.key, item]));
        this.adopt({ projectId, set: { guid: selection.set }, items });
    }

    async #show({ projectId, sets, set }, asked) {
        const tree = readJson(set ? await this.host.publishTree(set.rootGuid) : "") ?? [];
        if (asked !== this.#question) return;
        const name = nameOf(projectId, set?.guid);
        const items = this.#items.get(name) ?? new Map();
        const leaves = new Set(leavesOf(tree).map(({ key }) => key));
        for (const key of items.keys()) {
            if (tree.length && !leaves.has(key)) items.delete(key); // of a host that fails there is no tree
        }
        this.#items.set(name, items);
        this.#change({ phase: "ready", sets, set, tree, items });
    }

    #keep(items) {
        const { projectId, set } = this.state.get();
        this.#items.set(nameOf(projectId, set.guid), items);
        this.#change({ items });
        this.#rememberSoon();
    }

    #rememberSoon() {
        clearTimeout(this.#timer);
        this.#timer = setTimeout(() => {
            const { projectId, set, items } = this.state.get();
            if (set) this.remember({ projectId, set, items }, false).catch(() => {});
        }, this.delay);
    }

    #change(changes) {
        this.state.set({ ...this.state.get(), ...changes });
    }
}

const messageOf = (error) => error?.message || String(error);
