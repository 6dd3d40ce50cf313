/**
 * Reads the service's answer to an upload, whatever its HTTP status was.
 * Gives { document } for a stored model, { error } with the service's own words for a refusal, and
 * { error: "" } for anything else.
 */
export function readUploadAnswer(text) {
    let answer;
    try {
        answer = JSON.parse(text);
    } catch {
        return { error: "" };
    }
    if (Array.isArray(answer)) {
        const document = answer[0];
        const usable = document && (typeof document.id === "string" || typeof document.id === "number");
        return usable ? { document } : { error: "" };
    }
    return { error: typeof answer?.error === "string" ? answer.error : "" };
}
