import { readUploadAnswer } from "./logic/upload-answer.js";
import { text } from "./text.js";
import { Value } from "./value.js";

/**
 * The upload of the open model, from the press of the button to the service's answer. It outlives views and
 * sign-ins; what is under way is kept in `pending`, so that it outlives a reload of the page too.
 *
 * Other uploads derive from it and say in the functions at its end what is different.
 */
export class Upload {
    /**
     * { state: "idle" }
     * { state: "running", since, fileName }: since when, in milliseconds since 1970
     * { state: "done", document }: at least its id and name
     * { state: "failed", message }
     */
    status = new Value({ state: "idle" });

    /** onUploaded(projectId, document) is told of each uploaded file. */
    constructor(host, service, pending, onUploaded = () => {}) {
        this.host = host;
        this.service = service;
        this.pending = pending;
        this.onUploaded = onUploaded;
    }

    /** Starts the export and upload, unless one is running. */
    async start(request) {
        if (this.status.get().state === "running") return;
        const { projectId, folderId, fileName } = request;
        const since = Date.now();
        const mine = { state: "running", since, fileName };
        const stopped = () => this.status.get() !== mine;
        this.status.set(mine);
        try {
            // Better told now than after a long export.
            await this.service.session();
            if (stopped()) return;
            await this.prepare(request);
            if (stopped()) return;
            const before = await this.answer();
            if (stopped()) return;
            const name = this.documentName(request);
            this.pending.set({ since, fileName, name, projectId, folderId, before });
            await this.send({ token: this.service.token, ...request });
        } catch (error) {
            if (!stopped()) this.end({ state: "failed", message: messageOf(error) });
        }
    }

    /** Takes up the upload that was running before the page was loaded anew. */
    async resume() {
        const pending = this.pending.get();
        if (!pending || this.status.get().state !== "idle") return;
        const mine = { state: "running", since: pending.since, fileName: pending.fileName };
        this.status.set(mine);
        // It may have ended while there was no page to be told.
        const answer = await this.answer().catch(() => pending.before);
        if (answer !== pending.before && this.status.get() === mine) await this.complete();
    }

    /** The host got an answer from the service. */
    async complete() {
        const pending = this.pending.get();
        const answer = readUploadAnswer(await this.answer().catch(() => ""));
        if (answer.document) {
            const document = await this.#described(answer.document, pending);
            this.end({ state: "done", document });
            if (pending) this.onUploaded(pending.projectId, document);
            return;
        }
        const said = answer.error;
        const refusal = said ? text("upload.refused", { said }) : text("upload.unreadable");
        this.end({ state: "failed", message: await this.explained(refusal) });
    }

    /** The host could not export, or got no answer. */
    async fail() {
        this.end({ state: "failed", message: await this.explained(text(`${this.words}.failed`)) });
    }

    /** Frees the page from an upload that never ends; a late answer is still shown. */
    stopWaiting() {
        this.end({ state: "failed", message: text("upload.stoppedWaiting") });
    }

    /** Puts a result away that has been read. */
    forget() {
        if (this.status.get().state !== "running") this.status.set({ state: "idle" });
    }

    end(status) {
        this.pending.set(null);
        this.status.set(status);
    }

    async #described(document, pending) {
        if (document.name || !pending) return { name: String(document.id), ...document };
        const listed = await this.service.documents(pending.folderId).catch(() => []);
        return listed.find(({ id }) => id === document.id) ?? { ...document, name: pending.name };
    }

    /** Where its texts stand: "upload.running" and so on. */
    words = "upload";

    documentName({ fileName }) {
        return `${fileName}.ifc`;
    }

    /** What comes before anything is sent; throws what the person is then told. */
    async prepare() {}

    /** The service's answer to the last such upload that it answered, as text. */
    answer() {
        return this.host.uploadAnswer();
    }

    send(request) {
        return this.host.exportModel(request);
    }

    // The host does not hand on the status of the answer; the service itself knows whether the sign-in ended.
    async explained(message) {
        if (!this.service.token) return text("upload.expired");
        try {
            await this.service.session();
            return message;
        } catch (error) {
            return error.status === 401 ? text("upload.expired") : messageOf(error);
        }
    }
}

const messageOf = (error) => error?.message || String(error);
