import { readElements } from "./logic/elements.js";
import { Value } from "./value.js";

/**
 * The host's selection, while it is followed. Showing one element of it makes the host select that one alone;
 * the list stays then, so that the person can go on to the next.
 */
export class Selection {
    /** { elements: [{ ifcGuid, name }], shown: the IFC GUID of the one among them that the person looks at } */
    state = new Value({ elements: [], shown: null });

    #followed = false;
    #asking = false;
    #stale = false;
    #visited = new Set();

    constructor(host) {
        this.host = host;
    }

    /** Starts or stops to follow. */
    async follow(followed) {
        this.#followed = followed;
        await this.host.watchSelection(followed).catch(() => {});
        if (followed) await this.update();
    }

    /** The host says that the selection changed. Of many such calls in a row few lead to a question. */
    async update() {
        if (!this.#followed) return;
        this.#stale = true;
        if (this.#asking) return;
        this.#asking = true;
        while (this.#stale) {
            this.#stale = false;
            this.#take(readElements(await this.host.selectedElements().catch(() => [])));
        }
        this.#asking = false;
    }

    /** Selects the element alone and goes there; whether the model has it. */
    async show(ifcGuid) {
        if (this.#has(ifcGuid)) this.#visited.add(ifcGuid);
        try {
            await this.host.highlight([ifcGuid]);
            return await this.host.zoomTo(ifcGuid);
        } catch {
            return false;
        }
    }

    /** Selects the whole list again. */
    async selectAll() {
        const { elements } = this.state.get();
        await this.host.highlight(elements.map(({ ifcGuid }) => ifcGuid)).catch(() => {});
    }

    #take(elements) {
        const [only] = elements;
        if (elements.length === 1 && this.#visited.has(only.ifcGuid)) {
            this.state.set({ ...this.state.get(), shown: only.ifcGuid });
            return;
        }
        this.#visited.clear();
        this.state.set({ elements, shown: null });
    }

    #has(ifcGuid) {
        return this.state.get().elements.some((element) => element.ifcGuid === ifcGuid);
    }
}
