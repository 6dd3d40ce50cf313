import { planFormat } from "./logic/plan-formats.js";
import { text } from "./text.js";
import { Upload } from "./upload.js";

const watchInterval = 15000;

/** The making and upload of a document of the current plan; a request also has the `format`, a plan format's id. */
export class PlanUpload extends Upload {
    words = "plans";

    #watch = null;

    documentName({ fileName, format }) {
        return `${fileName}.${planFormat(format).extension}`;
    }

    async prepare({ format }) {
        const path = await this.host.createPlan(planFormat(format).kind);
        if (path === "") throw new Error(text("plans.notMade"));
    }

    answer() {
        return this.host.planAnswer();
    }

    async send({ token, projectId, folderId, fileName }) {
        await this.host.exportPlan({ token, projectId, folderId, fileName });
        this.#watchService();
    }

    async resume() {
        await super.resume();
        this.#watchService();
    }

    end(status) {
        clearInterval(this.#watch);
        super.end(status);
    }

    // A refusal comes without a reason: the folder, too, may be gone.
    async explained(message) {
        const folderId = this.pending.get()?.folderId;
        const explanation = await super.explained(message);
        if (explanation !== message || !folderId) return explanation;
        return this.service.documents(folderId).then(
            () => message,
            (error) => error.message,
        );
    }

    // The host says nothing about an upload whose connection broke.
    #watchService() {
        clearInterval(this.#watch);
        const watched = this.status.get();
        if (watched.state !== "running") return;
        let failures = 0;
        this.#watch = setInterval(async () => {
            try {
                await this.service.session();
                failures = 0;
            } catch (error) {
                const expired = error.status === 401;
                failures += 1; // one alone may be a hiccup
                if (this.status.get() !== watched || (failures < 2 && !expired)) return;
                this.end({ state: "failed", message: text(expired ? "upload.expired" : "plans.lost") });
            }
        }, watchInterval);
    }
}
