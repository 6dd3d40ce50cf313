const kept = 100;

/** Addresses for the service's pictures: an image of the page cannot send the sign-in along. */
export class Pictures {
    #addresses = new Map();

    constructor(service) {
        this.service = service;
    }

    /** An address for an image; rejects with a ServiceError. */
    address(resourceId) {
        const known = this.#addresses.get(resourceId);
        if (known) return known;
        const address = this.service.picture(resourceId).then((picture) => URL.createObjectURL(picture));
        this.#addresses.set(resourceId, address);
        address.catch(() => this.#addresses.delete(resourceId));
        if (this.#addresses.size > kept) this.#forget(this.#addresses.keys().next().value);
        return address;
    }

    #forget(resourceId) {
        this.#addresses.get(resourceId).then((address) => URL.revokeObjectURL(address), () => {});
        this.#addresses.delete(resourceId);
    }
}
