import { fileNameOf, modelInfo, projectNameOf } from "./logic/models.js";
import { text } from "./text.js";
import { Value } from "./value.js";

/**
 * The opening of models in the host, from the press of the button to the open project. It outlives views and
 * sign-ins; what is under way is kept in `pending`, so that it outlives a reload of the page too.
 */
export class ModelWork {
    /**
     * { state: "idle" }
     * { state: "downloading" or "opening", since, names, infos, resumed }: the models' names, and what the host
     *     was told of them; the last one is opened last, and the others are merged into it. resumed: by a page
     *     that was loaded anew
     * { state: "done", names }
     * { state: "failed", message }
     */
    status = new Value({ state: "idle" });

    #owed = 0; // requests of this page whose downloads the host has not reported yet

    /** takeProjectName() asks the host for the open project's name and gives it, or an empty one. */
    constructor(host, service, pending, takeProjectName, interval = 1000) {
        this.host = host;
        this.service = service;
        this.pending = pending;
        this.takeProjectName = takeProjectName;
        this.interval = interval;
    }

    isBusy() {
        return ["downloading", "opening"].includes(this.status.get().state);
    }

    /** Opens the models, unless a run is under way. chosen: [{ model, version }]; the last takes the others. */
    async start(chosen) {
        if (this.isBusy()) return;
        const names = chosen.map(({ model }) => model.name);
        const infos = chosen.map(({ model, version }) => modelInfo(model, version));
        const run = { state: "downloading", since: Date.now(), names, infos };
        this.status.set(run);
        try {
            // The host would keep the service's refusals as models.
            await this.service.session();
            if ((await this.host.resourceFolder()) === "") throw new Error(text("models.noFolder"));
            if (this.status.get() !== run) return;
            this.pending.set(run);
            this.#owed += 1;
            await this.host
                .importModels({ token: this.service.token, modelInfos: infos })
                .catch((error) => {
                    this.#owed -= 1;
                    throw error;
                });
        } catch (error) {
            this.#end(run, { state: "failed", message: messageOf(error) });
        }
    }

    /** Takes up the run that was under way before the page was loaded anew. */
    async resume() {
        const pending = this.pending.get();
        if (!pending || this.isBusy()) return;
        const run = { ...pending, resumed: true };
        this.status.set(run);
        if (run.state !== "opening") return;
        // Nobody tells this page that the host has done; the project's name does.
        while (this.status.get() === run && !isOpen(run, await this.host.projectName().catch(() => ""))) {
            await new Promise((resolve) => setTimeout(resolve, this.interval));
        }
        await this.takeProjectName();
        this.#end(run, { state: "done", names: run.names });
    }

    /** The host has downloaded what it was asked for, or failed to. */
    async complete() {
        this.#owed = Math.max(0, this.#owed - 1);
        const downloaded = this.status.get();
        if (downloaded.state !== "downloading" || this.#owed > 0) return;
        const run = { ...downloaded, state: "opening", resumed: false };
        this.status.set(run);
        try {
            await this.#checkSession();
            this.pending.set(run);
            await this.host.openModels();
        } catch (error) {
            await this.takeProjectName();
            this.#end(run, { state: "failed", message: messageOf(error) });
            return;
        }
        const done = { state: "done", names: run.names };
        const opened = isOpen(run, await this.takeProjectName());
        this.#end(run, opened ? done : { state: "failed", message: await this.#notOpened(run) });
    }

    /** Frees the page from downloads that never end. */
    stopWaiting() {
        this.#end(this.status.get(), { state: "failed", message: text("models.stoppedWaiting") });
    }

    /** Puts a result away that has been read. */
    forget() {
        if (!this.isBusy()) this.status.set({ state: "idle" });
    }

    // Of a service that has stopped answering there are no models, and of an ended sign-in only refusals.
    async #checkSession() {
        try {
            await this.service.session();
        } catch (error) {
            if (error.status !== 401) throw error;
            throw new Error(text("models.expired", { folder: await this.#folder() }));
        }
    }

    async #notOpened({ names, infos }) {
        const file = fileNameOf(infos.at(-1));
        return text("models.notOpened", { name: names.at(-1), file, folder: await this.#folder() });
    }

    #folder() {
        return this.host.resourceFolder().catch(() => "");
    }

    #end(run, status) {
        if (this.status.get() !== run) return;
        this.pending.set(null);
        this.status.set(status);
    }
}

const isOpen = ({ infos }, name) => name.normalize("NFC") === projectNameOf(infos.at(-1));
const messageOf = (error) => error?.message || String(error);
