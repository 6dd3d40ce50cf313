// What the page remembers: the sign-in, what is under way and the view until the host is left; choices for good.

function remembered(store, name) {
    const key = `kestrane.${name}`;
    let fallback = null; // where the browser keeps nothing, the page's own life must do
    return {
        get() {
            try {
                return JSON.parse(store().getItem(key));
            } catch {
                return fallback;
            }
        },
        set(value) {
            fallback = value;
            try {
                if (value === null) store().removeItem(key);
                else store().setItem(key, JSON.stringify(value));
            } catch {
                // A full or forbidden store: the value holds until the next reload.
            }
        },
    };
}

const session = () => window.sessionStorage;
const local = () => window.localStorage;

/** { token, user } of the person signed in. */
export const signedIn = remembered(session, "signedIn");
/** The upload under way, see upload.js. */
export const pendingUpload = remembered(session, "upload");
/** The opening of models under way, see models.js. */
export const pendingModels = remembered(session, "models");
/** The publishing under way, see publishing.js. */
export const pendingPublish = remembered(session, "publish");
/** { project, fileName, onlyVisible }: what was filled in, and for which open project. */
export const draft = remembered(session, "draft");
/** The upload of a plan under way, see plan-upload.js. */
export const pendingPlan = remembered(session, "plan");
/** { project, fileName, format } of the plan document, likewise. */
export const planDraft = remembered(session, "planDraft");
/** { path, applied, names }: the property mapping, see mapping.js. */
export const mapping = remembered(session, "mapping");
/** Which of its views the page shows: "documents", "plans", "mapping", "publish", "models" or "issues". */
export const shownView = remembered(session, "view");
/** { user, projectId, folderId } chosen last. */
export const choices = remembered(local, "choices");
/** { discipline, building, floor }: the values typed last for published documents, newest first. */
export const publishValues = remembered(local, "publishValues");
