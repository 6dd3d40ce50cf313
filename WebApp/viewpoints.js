import { readViewpointText } from "./logic/viewpoint-text.js";
import { text } from "./text.js";
import { Value } from "./value.js";

const patience = 60000; // for the snapshot's upload, once the host has nothing more to say

/** Takes and opens viewpoints, one at a time. It outlives views, so that a snapshot under way is not lost. */
export class ViewpointWork {
    /**
     * { state: "idle" }
     * { state: "working", topicId, step }: step is "snapshot", "storing" or "opening"
     * { state: "done", topicId, viewpointId, step: "stored" or "opened" }
     * { state: "failed", topicId, message }
     */
    status = new Value({ state: "idle" });
    /** { projectId, topicId, viewpoint } of the viewpoint stored last. */
    stored = new Value(null);

    #run = 0;
    #snapshotRun = null; // the run that waits for InsertViewpoint
    #timer = null;
    #projectId = null; // of the snapshot under way

    constructor(host, service, pictures, wait = patience) {
        this.host = host;
        this.service = service;
        this.pictures = pictures;
        this.wait = wait;
    }

    isBusy() {
        return this.status.get().state === "working";
    }

    /** Takes a viewpoint of the host's view for the issue. */
    async take(projectId, topicId) {
        if (this.isBusy()) return;
        const run = this.#begin(topicId, "snapshot");
        try {
            // Better told now: the host does not hand on that the service refused the snapshot.
            await this.service.session();
            if (run !== this.#run) return;
            this.#snapshotRun = run;
            this.#projectId = projectId;
            await this.host.exportSnapshot({ token: this.service.token, projectId });
            if (this.#snapshotRun !== run) return;
            this.#timer = setTimeout(() => this.#fail(run, text("viewpoints.noSnapshot")), this.wait);
        } catch (error) {
            this.#fail(run, messageOf(error));
        }
    }

    /** The host has uploaded a snapshot. */
    async insert() {
        const run = this.#snapshotRun;
        if (run === null || run !== this.#run) return;
        this.#endWait();
        const { topicId } = this.status.get();
        this.status.set({ state: "working", topicId, step: "storing" });
        try {
            await this.#store(run, topicId);
        } catch (error) {
            this.#fail(run, messageOf(error));
        }
    }

    /** Has the host show a stored viewpoint. Gives its parsed object, or null when that failed. */
    async open(topicId, viewpointId) {
        if (this.isBusy()) return null;
        const run = this.#begin(topicId, "opening");
        try {
            const viewpoint = await this.read(viewpointId);
            if (run !== this.#run) return null;
            // The host would leave cutting planes on for a viewpoint that has none.
            if (viewpoint !== null && !viewpoint.sections?.length) await this.host.highlight([]);
            const opened = viewpoint !== null && (await this.host.openViewpoint(viewpoint));
            if (!opened) return this.#fail(run, text("viewpoints.unreadable"));
            this.#end(run, { state: "done", topicId, viewpointId, step: "opened" });
            return viewpoint;
        } catch (error) {
            return this.#fail(run, messageOf(error));
        }
    }

    /** The parsed object of a stored viewpoint, or null when it is none. Rejects with a ServiceError. */
    async read(viewpointId) {
        const stored = await this.service.viewpointText(viewpointId);
        try {
            return JSON.parse(stored);
        } catch {
            return null;
        }
    }

    /** Ends what is under way as far as it can be ended, or puts a result away that has been read. */
    dismiss() {
        this.#run += 1;
        this.#endWait();
        this.status.set({ state: "idle" });
    }

    async #store(run, topicId) {
        const captured = await this.host.viewpoint();
        if (run !== this.#run) return;
        if (captured === "") {
            this.#fail(run, text("viewpoints.noView"));
            return;
        }
        const { snapshot, refusal } = readViewpointText(captured);
        if (refusal !== undefined) {
            this.#fail(run, await this.#explained(refusal));
            return;
        }
        if (!(await this.#hasSnapshot(snapshot))) {
            this.#fail(run, text("viewpoints.lostSnapshot"));
            return;
        }
        if (run !== this.#run) return;
        const viewpoint = await this.service.addViewpoint(topicId, snapshot, captured);
        this.stored.set({ projectId: this.#projectId, topicId, viewpoint });
        this.#end(run, { state: "done", topicId, viewpointId: viewpoint.id, step: "stored" });
    }

    async #hasSnapshot(snapshot) {
        try {
            await this.pictures.address(snapshot);
            return true;
        } catch (error) {
            if (error.status === 404) return false;
            throw error;
        }
    }

    // Why the service refused the snapshot: its sign-in may have ended meanwhile.
    async #explained(refusal) {
        await this.service.session();
        return refusal ? text("viewpoints.refused", { said: refusal }) : text("viewpoints.refusedUnread");
    }

    #begin(topicId, step) {
        this.#run += 1;
        this.status.set({ state: "working", topicId, step });
        return this.#run;
    }

    #fail(run, message) {
        const { topicId } = this.status.get();
        this.#end(run, { state: "failed", topicId, message });
        return null;
    }

    #end(run, status) {
        if (run !== this.#run) return;
        this.#endWait();
        this.status.set(status);
    }

    #endWait() {
        clearTimeout(this.#timer);
        this.#snapshotRun = null;
    }
}

const messageOf = (error) => error?.message || String(error);
