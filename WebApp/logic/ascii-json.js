/**
 * JSON text of nothing but ASCII characters. The host keeps as many bytes of a text as it has characters, and
 * would cut the end off any other.
 */
export function asciiJson(value) {
    const escaped = (unit) => `\\u${unit.charCodeAt(0).toString(16).padStart(4, "0")}`;
    return JSON.stringify(value).replace(/[\u007f-\uffff]/g, escaped);
}

/** The value of a JSON text, or null when it is none. */
export function readJson(text) {
    try {
        return JSON.parse(text);
    } catch {
        return null;
    }
}
