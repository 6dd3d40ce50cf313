import { text } from "./text.js";

const answerTimeout = 20000;

/** A request that failed; the message is for the person and says what to do. */
export class ServiceError extends Error {
    constructor(status, message) {
        super(message);
        this.status = status; // 0: no answer
    }
}

/** The service behind the page. Every function rejects with a ServiceError. */
export class Service {
    token = null;
    /** Called when the service no longer knows the token. */
    onSignInExpired = () => {};

    /** base: the address of the programming interface, with a slash at its end. */
    constructor(base) {
        this.base = base;
    }

    async signIn(user, password) {
        const session = await this.#json("POST", "session", { user, password });
        this.token = session.token;
        return session;
    }

    async signOut() {
        const answer = this.#answer("DELETE", "session");
        this.token = null;
        await answer;
    }

    session() {
        return this.#json("GET", "session");
    }

    projects() {
        return this.#json("GET", "projects");
    }

    createProject(name) {
        return this.#json("POST", "projects", { name });
    }

    folders(projectId) {
        return this.#json("GET", `projects/${encodeURIComponent(projectId)}/folders`);
    }

    createFolder(projectId, name) {
        return this.#json("POST", `projects/${encodeURIComponent(projectId)}/folders`, { name });
    }

    /** The folder's documents, newest first. */
    documents(folderId) {
        return this.#json("GET", `documents?folderId=${encodeURIComponent(folderId)}`);
    }

    /** The document's content as a Blob; takes as long as it takes. */
    content(documentId) {
        return this.#content(`document/${encodeURIComponent(documentId)}`, "blob");
    }

    /** The project's IFC models with all their versions, newest first, sorted by name. */
    models(projectId) {
        return this.#json("GET", `models?projectId=${encodeURIComponent(projectId)}`);
    }

    /** The project's issues, newest first. */
    topics(projectId) {
        return this.#json("GET", `projects/${encodeURIComponent(projectId)}/topics`);
    }

    createTopic(projectId, { title, description }) {
        return this.#json("POST", `projects/${encodeURIComponent(projectId)}/topics`, { title, description });
    }

    /** status: "open" or "closed". */
    setTopicStatus(topicId, status) {
        return this.#json("PATCH", `topics/${encodeURIComponent(topicId)}`, { status });
    }

    /** The viewpoints without their texts, oldest first. */
    viewpoints(topicId) {
        return this.#json("GET", `topics/${encodeURIComponent(topicId)}/viewpoints`);
    }

    /** Stores the viewpoint's text as it is. `snapshot` is the id of its picture. */
    addViewpoint(topicId, snapshot, viewpointText) {
        const path = `topics/${encodeURIComponent(topicId)}/viewpoints`;
        return this.#json(
            "POST",
            `${path}?snapshot=${encodeURIComponent(snapshot)}`,
            viewpointText,
            Infinity,
        );
    }

    viewpointText(viewpointId) {
        return this.#content(`viewpoints/${encodeURIComponent(viewpointId)}`, "text");
    }

    async deleteViewpoint(viewpointId) {
        await this.#answer("DELETE", `viewpoints/${encodeURIComponent(viewpointId)}`);
    }

    /** The picture as a Blob. */
    picture(resourceId) {
        return this.#content(`resource/${encodeURIComponent(resourceId)}`, "blob");
    }

    /** kind: "blob" or "text". */
    async #content(path, kind) {
        const response = await this.#answer("GET", path, null, Infinity);
        try {
            return await response[kind]();
        } catch {
            throw this.#unreachable();
        }
    }

    async #json(method, path, body = null, timeout = answerTimeout) {
        const response = await this.#answer(method, path, body, timeout);
        try {
            return await response.json();
        } catch {
            throw new ServiceError(response.status, text("error.unreadable", { address: this.base }));
        }
    }

    /** body: a text as it is, or an object. */
    async #answer(method, path, body = null, timeout = answerTimeout) {
        const token = this.token;
        const request = { method, headers: {}, cache: "no-store" };
        if (token) request.headers["X-Project-Authorization"] = `bearer ${token}`;
        if (body) {
            request.headers["Content-Type"] = "application/json";
            request.body = typeof body === "string" ? body : JSON.stringify(body);
        }
        const response = await this.#fetch(path, request, timeout);
        if (response.ok) return response;
        throw await this.#refusal(response, token);
    }

    async #fetch(path, request, timeout) {
        const abort = new AbortController();
        const timer = Number.isFinite(timeout) ? setTimeout(() => abort.abort(), timeout) : null;
        try {
            return await fetch(this.base + path, { ...request, signal: abort.signal });
        } catch {
            throw this.#unreachable();
        } finally {
            clearTimeout(timer);
        }
    }

    async #refusal(response, token) {
        const said = await response.json().then(
            (answer) => String(answer?.error ?? ""),
            () => "",
        );
        const { status } = response;
        if (status === 401 && token) {
            // An answer to an older sign-in must not end the present one.
            if (token === this.token) {
                this.token = null;
                this.onSignInExpired();
            }
            return new ServiceError(status, text("error.expired"));
        }
        return new ServiceError(status, refusalText(status, said));
    }

    #unreachable() {
        return new ServiceError(0, text("error.unreachable", { address: this.base }));
    }
}

function refusalText(status, said) {
    if (status === 401) return text("error.credentials");
    if (status === 404) return text("error.gone");
    if (status === 409) return text("error.exists");
    if (status === 413) return text("error.large");
    if (status === 507) return text("error.full");
    const known = said || `HTTP ${status}`;
    return text(status >= 500 ? "error.server" : "error.refused", { said: known });
}
