import { asciiJson } from "./logic/ascii-json.js";
import { readHistory, together, withEntries } from "./logic/export-history.js";
import { Value } from "./value.js";

/** What was exported from this host into the service's projects; the host keeps it, models apart from the rest. */
export class ExportHistory {
    /** The shown project's entries, newest first: [{ time, kind, name, document }], kind "model", "plan", "snapshot" or "document". */
    entries = new Value([]);

    #projectId = null;
    #last = Promise.resolve();

    constructor(host) {
        this.host = host;
    }

    /** Shows the project's entries. */
    load(projectId) {
        this.#projectId = projectId;
        this.entries.set([]);
        return this.#inTurn(() => this.#show(projectId));
    }

    /** Adds to the project's entries. Never fails: a history is not worth a message. */
    add(projectId, isModel, fresh) {
        if (fresh.length === 0) return this.#last;
        return this.#inTurn(async () => {
            const kept = readHistory(await this.host.exportHistory(projectId, isModel));
            await this.host.saveExportHistory(projectId, isModel, asciiJson(withEntries(fresh, kept)));
            await this.#show(projectId);
        });
    }

    async #show(projectId) {
        if (!projectId || projectId !== this.#projectId) return;
        const texts = [true, false].map((model) => this.host.exportHistory(projectId, model));
        const entries = together(...(await Promise.all(texts)).map(readHistory));
        if (projectId === this.#projectId) this.entries.set(entries);
    }

    #inTurn(work) {
        if (!this.host?.canPublish()) return this.#last;
        this.#last = this.#last.then(work).catch(() => {});
        return this.#last;
    }
}
