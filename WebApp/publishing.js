import { readJson } from "./logic/ascii-json.js";
import {
    documentName,
    hasFile,
    itemsFor,
    nameProblems,
    orderOf,
    readDocumentIds,
    readPrepared,
    requestOf,
} from "./logic/publish-items.js";
import { text } from "./text.js";
import { Value } from "./value.js";

/**
 * The preparation and upload of picked items, one run at a time. It outlives views and sign-ins; the run under
 * way is kept in `pending`, so that it outlives a reload of the page too.
 */
export class Publishing {
    /**
     * { state: "idle" }
     * { state: "preparing" or "uploading", since, count, resumed }
     * { state: "done", prepared } or { state: "done", uploaded }: how many items
     * { state: "failed", message }; what became of an item stands in the choice
     */
    status = new Value({ state: "idle" });

    #run = null; // the last one; also after it was given up, since it may end after all

    constructor(host, service, choice, history, pending, interval = 1000) {
        this.host = host;
        this.service = service;
        this.choice = choice;
        this.history = history;
        this.pending = pending;
        this.interval = interval;
    }

    isBusy() {
        return ["preparing", "uploading"].includes(this.status.get().state);
    }

    /**
     * Starts a run, unless one is under way. what: "prepare"; "upload", which prepares only what has no file
     * at hand; or "publish" for both.
     * folderId: where items without a folder of their own go.
     */
    async start(what, { projectId, set, items, folderId }) {
        if (this.isBusy()) return;
        const chosen = itemsFor(what, [...items.values()]);
        const { token } = this.service;
        const run = { what, projectId, set, items, folderId, token, keys: chosen.map(({ key }) => key) };
        this.#run = run;
        await this.#try(run, async () => {
            const missing = what === "upload" ? chosen.filter((item) => !hasFile(item)) : chosen;
            this.#enter(run, missing.length ? "preparing" : "uploading");
            // Better told now than after a long preparation.
            if (what !== "prepare") await this.service.session();
            if (missing.length) await this.#prepare(run, missing);
            await this.#goOn(run);
        });
    }

    /** Takes up the run that was under way before the page was loaded anew. */
    async resume() {
        const pending = this.pending.get();
        if (!pending || this.isBusy()) return;
        const run = { ...pending, items: new Map(pending.items), resumed: true };
        this.#run = run;
        this.choice.adopt(run);
        this.status.set(statusOf(run));
        if (run.state === "uploading") {
            const ids = await this.#documents(run);
            if (run.uploads.every((key) => ids.has(key))) await this.#settle(run, ids);
            return;
        }
        await this.#try(run, async () => {
            const prepared = await this.#awaitPrepared(run);
            if (!prepared) return;
            this.#take(run, run.requested, prepared);
            await this.choice.remember(run, true);
            await this.#goOn(run);
        });
    }

    /** The host has uploaded what it was asked to last, or failed to. */
    async complete() {
        const run = this.#run;
        if (run?.uploads) await this.#settle(run, await this.#documents(run));
    }

    /** The host could not begin to upload. */
    async fail() {
        const run = this.#run;
        if (run?.uploads) await this.#settle(run, new Map(), text("publish.nothingUploaded"));
    }

    /** Frees the page from a run that never ends; what is known of it is shown, and a late end of uploads still is. */
    async stopWaiting() {
        const run = this.#run;
        if (!run || !this.isBusy()) return;
        const unknown = new Promise((resolve) => setTimeout(() => resolve(new Map()), 2 * this.interval));
        const ids = run.uploads ? await Promise.race([this.#documents(run), unknown]) : new Map();
        if (run !== this.#run || !this.isBusy()) return;
        this.#outcome(run, ids, text("publish.noAnswer"));
        if (!run.uploads) this.#run = null;
        const message = text(run.uploads ? "publish.stoppedWaiting" : "publish.stoppedPreparing");
        this.#end({ state: "failed", message });
    }

    /** Puts a result away that has been read. */
    forget() {
        if (!this.isBusy()) this.status.set({ state: "idle" });
    }

    #enter(run, state) {
        run.since ??= Date.now();
        run.state = state;
        this.status.set(statusOf(run));
    }

    async #prepare(run, items) {
        run.requested = items.map(({ key }) => key);
        run.marker = await this.choice.remember(run, false);
        if (run !== this.#run) return;
        this.#store(run);
        const answer = await this.host.preparePublish({
            guid: run.set.guid,
            projectId: run.projectId,
            publishItems: items.map((item) => requestOf(this.#placed(run, item))),
        });
        if (run !== this.#run) return;
        const prepared = readPrepared(answer);
        if (prepared) this.#take(run, run.requested, prepared);
        // The host forgets the selection with each preparation, and would cut it off at the first umlauts.
        await this.choice.remember(run, prepared !== null);
        if (!prepared) throw new Error(text("publish.notPrepared"));
    }

    // Nobody tells this page that the host has done; the selection that the host holds does. While the host is
    // at it, that is what this page had it remember, or nothing.
    async #awaitPrepared(run) {
        while (run === this.#run && this.isBusy()) {
            const held = await this.host.publishSelection(run.projectId).catch(() => "");
            const publishItems = readJson(held)?.publishItems;
            const prepared = publishItems === run.marker ? null : readPrepared(publishItems);
            if (prepared) return prepared;
            await new Promise((resolve) => setTimeout(resolve, this.interval));
        }
        return null;
    }

    #take(run, keys, prepared) {
        const failed = { filePath: "", ext: "", state: "failed", message: text("publish.itemNotPrepared") };
        this.choice.update(
            run.items,
            keys.map((key) => {
                const file = prepared.get(key);
                return [key, file ? { ...file, state: "prepared", message: null } : failed];
            }),
        );
    }

    async #goOn(run) {
        if (run !== this.#run) return;
        const ready = run.keys.map((key) => run.items.get(key)).filter((item) => item && hasFile(item));
        if (run.what === "prepare") {
            const left = run.keys.length - ready.length;
            const message = text("publish.someNotPrepared", { count: left });
            this.#end(left ? { state: "failed", message } : { state: "done", prepared: ready.length });
        } else if (ready.length === 0) {
            throw new Error(text("publish.noneReady"));
        } else if (nameProblems(ready).size > 0) {
            throw new Error(text("publish.sameNames"));
        } else {
            await this.#upload(run, ready);
        }
    }

    async #upload(run, items) {
        this.#enter(run, "uploading");
        // Somebody else may have signed in during the preparation.
        if (run.token !== this.service.token) throw new Error(text("publish.expired"));
        await this.service.session();
        run.before = await this.host.publishedDocuments();
        if (run !== this.#run) return;
        await this.choice.remember(run, true); // with what was changed since the preparation
        if (run !== this.#run) return;
        run.uploads = items.map(({ key }) => key);
        this.choice.update(
            run.items,
            run.uploads.map((key) => [key, { state: "uploading", message: null }]),
        );
        this.#store(run);
        const { projectId, token } = run;
        const publishItems = items.map((item) => orderOf(this.#placed(run, item)));
        await this.host.uploadPublish({ projectId, token, publishItems });
    }

    #placed(run, item) {
        return { ...item, folder: item.folder || run.folderId };
    }

    // The documents of this run; until it has begun, the host has those of the run before.
    async #documents(run) {
        const ids = readDocumentIds(await this.host.publishedDocuments().catch(() => ""));
        for (const [key, id] of readDocumentIds(run.before)) {
            if (ids.get(key) === id) ids.delete(key);
        }
        return ids;
    }

    async #settle(run, ids, message = null) {
        const stored = run.uploads.filter((key) => ids.has(key));
        const lost = stored.length < run.uploads.length;
        const reason = lost ? await this.#explained() : null;
        if (run !== this.#run) return;
        this.#outcome(run, ids, reason);
        this.#run = null;
        const left = run.keys.length - stored.length;
        const partly = text("publish.someNotUploaded", { count: left });
        this.#end(
            left
                ? { state: "failed", message: message ?? partly }
                : { state: "done", uploaded: stored.length },
        );
        const time = new Date().toISOString();
        const entries = stored
            .map((key) => run.items.get(key))
            .filter(Boolean)
            .map((item) => {
                return { time, kind: "document", name: item.title, document: documentName(item) };
            });
        await this.history.add(run.projectId, false, entries);
    }

    #outcome(run, ids, message) {
        const outcome = (key) =>
            ids.has(key) ? { state: "done", documentId: ids.get(key) } : { state: "failed", message };
        this.choice.update(
            run.items,
            (run.uploads ?? []).map((key) => [key, outcome(key)]),
        );
    }

    // The host does not hand on the service's answers; the service itself knows whether the sign-in ended.
    async #explained() {
        if (!this.service.token) return text("publish.expired");
        try {
            await this.service.session();
            return text("publish.itemNotUploaded");
        } catch (error) {
            return error.status === 401 ? text("publish.expired") : messageOf(error);
        }
    }

    async #try(run, work) {
        try {
            await work();
        } catch (error) {
            if (run !== this.#run) return;
            this.#run = null;
            this.choice.update(
                run.items,
                (run.uploads ?? []).map((key) => [key, { state: "prepared" }]),
            );
            this.#end({ state: "failed", message: messageOf(error) });
        }
    }

    #store(run) {
        this.pending.set({ ...run, items: [...run.items] });
    }

    #end(status) {
        this.pending.set(null);
        this.status.set(status);
    }
}

const statusOf = ({ state, since, keys, resumed = false }) => ({ state, since, count: keys.length, resumed });
const messageOf = (error) => error?.message || String(error);
