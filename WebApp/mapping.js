import { text } from "./text.js";
import { Value } from "./value.js";

/** The property mapping that the host holds, and the names given to new properties; kept in `kept` beyond a reload. */
export class Mapping {
    /**
     * path: of the mapping file, empty when the host has none; applied: whether exports apply it;
     * names: given so far; message: what the person should know about the last choice, or empty
     */
    state = new Value({ path: "", applied: false, names: [], message: "" });

    #asking = false;

    constructor(host, kept) {
        this.host = host;
        this.state.set({ ...this.state.get(), ...kept.get() });
        this.state.watch(({ path, applied, names }) => kept.set({ path, applied, names }));
    }

    /** Has the person choose a mapping file. The host does not tell a cancelled choice from a bad file. */
    choose() {
        return this.#ask(async () => {
            const path = await this.host.openMappingFile();
            this.#change(path === "" ? { message: text("mapping.notRead") } : { path, applied: true });
        });
    }

    /** Has the person give a name to a new property. */
    addName() {
        return this.#ask(async () => {
            const { names } = this.state.get();
            const name = await this.host.newPropertyName(names);
            if (name !== "") this.#change({ names: [...names, name] });
        });
    }

    apply(applied) {
        this.#change({ applied });
    }

    /** Whether an export is to apply it. */
    applies() {
        const { path, applied } = this.state.get();
        return path !== "" && applied;
    }

    // One dialog at a time: the host queues what a second click asks for.
    async #ask(question) {
        if (this.#asking) return;
        this.#asking = true;
        try {
            await question();
        } catch (error) {
            this.#change({ message: error.message });
        } finally {
            this.#asking = false;
        }
    }

    #change(changes) {
        this.state.set({ ...this.state.get(), message: "", ...changes });
    }
}
