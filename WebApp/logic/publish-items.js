import { readJson } from "./ascii-json.js";
import { nameProblem, proposedFileName } from "./file-name.js";

// A picked item has what the host carries through (key, title, isLeaf, folder, isImport, docName, discipline,
// building, floor), what it answers (filePath, ext), and what became of it here (state, message, documentId).

/** More would not all get a connection to the service at once. */
export const mostAtOnce = 200;

export const details = ["discipline", "building", "floor"];
const mostValues = 12;

export function newItem({ key, title }, folder) {
    return {
        key,
        title,
        isLeaf: true,
        folder,
        isImport: false,
        docName: proposedFileName(title),
        discipline: "",
        building: "",
        floor: "",
        filePath: "",
        ext: "",
        state: "chosen",
    };
}

/**
 * The items that a run takes: what was uploaded already is left out unless all was, and an upload alone takes
 * only what was prepared once. what: "prepare", "upload" or "publish".
 */
export function itemsFor(what, items) {
    if (what === "prepare") return items;
    const open = items.filter(({ state }) => state !== "done");
    const chosen = open.length > 0 ? open : items;
    return what === "upload" ? chosen.filter(({ ext }) => ext !== "") : chosen;
}

/** The values filled in last, { discipline, building, floor }, each newest first, once these items had theirs. */
export function withValues(kept, items) {
    const valuesOf = (detail) => [...items.map((item) => item[detail].trim()), ...(kept?.[detail] ?? [])];
    const latest = (detail) => [...new Set(valuesOf(detail))].filter(Boolean).slice(0, mostValues);
    return Object.fromEntries(details.map((detail) => [detail, latest(detail)]));
}

/** What the host asks for of each item that it is to prepare. */
export function requestOf({ key, title, isLeaf, folder, isImport, docName, discipline, building, floor }) {
    return { key, title, isLeaf, folder, isImport, docName: docName.trim(), discipline, building, floor };
}

/** What the host keeps of an item; it insists on every member. */
export const keptOf = (item) => ({ ...requestOf(item), filePath: item.filePath, ext: item.ext });

/** What the host asks for of each item that it is to upload. */
export function orderOf({ key, docName, ext, filePath, folder }) {
    return { key, docName: docName.trim(), ext, filePath, folder };
}

/** What the host prepared: a Map from key to { filePath, ext }, or null when that is not what it answered. */
export function readPrepared(text) {
    const answer = readJson(text);
    if (!Array.isArray(answer)) return null;
    return new Map(answer.map(({ key, filePath, ext }) => [key, { filePath, ext }]));
}

/** The host's map from key to document, as a Map; empty when it is none. */
export function readDocumentIds(text) {
    const answer = readJson(text);
    return new Map(Object.entries(answer && !Array.isArray(answer) ? answer : {}));
}

/** The selection that the host remembers, { set, items }, or null when there is none. */
export function readSelection(text) {
    const kept = readJson(text);
    const items = readJson(kept?.publishItems);
    if (!Array.isArray(items)) return null;
    const usable = items.filter((item) => typeof item?.key === "string" && typeof item.docName === "string");
    return { set: kept.publishSet, items: usable.map(restored) };
}

function restored(item) {
    return { ...newItem(item, item.folder), ...keptOf(item), state: item.ext ? "prepared" : "chosen" };
}

/** Whether the host's file for the item can be uploaded; one that it remembers from before has no folder. */
export const hasFile = ({ filePath }) => /[\\/]/.test(filePath);

/** The folder of a path, without a separator at its end. */
export const folderOf = (path) => path.replace(/[\\/][^\\/]*$/, "");

/** The document's name; of an item that is not prepared without its extension. */
export function documentName({ docName, ext }) {
    return ext ? `${docName.trim()}.${ext.replace(/^\./, "")}` : docName.trim();
}

/**
 * What is wrong with the items' document names: a Map from key to the name of the problem. "same": an earlier
 * item has this name, so the host would drop this one, whatever its folder; "maybeSame": so it is unless the
 * host prepares files of two kinds.
 */
export function nameProblems(items) {
    const problems = new Map();
    const earlier = new Map();
    for (const item of items) {
        const stem = item.docName.trim().normalize("NFC").toLowerCase();
        const kinds = earlier.get(stem) ?? new Set();
        const kind = item.ext.toLowerCase();
        const problem = nameProblem(item.docName.trim()) ?? clash(kind, kinds);
        if (problem) problems.set(item.key, problem);
        earlier.set(stem, kinds.add(kind));
    }
    return problems;
}

function clash(kind, kinds) {
    if (kinds.size === 0) return null;
    if (kind !== "" && kinds.has(kind)) return "same";
    return kind === "" || kinds.has("") ? "maybeSame" : null;
}
