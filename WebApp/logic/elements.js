/**
 * Reads elements that are given as objects, as JSON texts of such objects, or as bare IFC GUIDs. Gives
 * [{ ifcGuid, name }]; what names no element is left out.
 */
export function readElements(list) {
    if (!Array.isArray(list)) return [];
    return list.map(readElement).filter(({ ifcGuid }) => ifcGuid !== "");
}

function readElement(given) {
    const element = typeof given === "string" && given.startsWith("{") ? parsed(given) : given;
    if (typeof element === "string") return { ifcGuid: element, name: "" };
    return { ifcGuid: String(element?.ifcGuid ?? ""), name: String(element?.name ?? "") };
}

function parsed(text) {
    try {
        return JSON.parse(text);
    } catch {
        return null;
    }
}

/** What a person sees of an element. */
export const labelOf = ({ ifcGuid, name }) => name.trim() || ifcGuid;
