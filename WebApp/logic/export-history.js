import { readJson } from "./ascii-json.js";

export const mostEntries = 200;

/** The entries of a kept history, newest first: [{ time, kind, name, document }]; what is no entry is left out. */
export function readHistory(text) {
    const entries = readJson(text);
    if (!Array.isArray(entries)) return [];
    return entries.filter((entry) => typeof entry?.time === "string").slice(0, mostEntries);
}

/** The history with these entries before the others, as long as it may be. */
export const withEntries = (fresh, kept) => [...fresh, ...kept].slice(0, mostEntries);

/** Several histories in one, newest first. */
export function together(...histories) {
    return histories.flat().sort((one, other) => Date.parse(other.time) - Date.parse(one.time));
}
