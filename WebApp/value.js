/** A value that tells its watchers when it is set. */
export class Value extends EventTarget {
    #current;

    constructor(initial) {
        super();
        this.#current = initial;
    }

    get() {
        return this.#current;
    }

    set(next) {
        this.#current = next;
        this.dispatchEvent(new Event("change"));
    }

    /** Calls the listener with the value, now and after each change, until the signal aborts. */
    watch(listener, signal) {
        this.addEventListener("change", () => listener(this.#current), { signal });
        listener(this.#current);
    }
}
