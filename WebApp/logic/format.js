const locales = { en: "en-GB", de: "de-DE" };
const units = ["B", "KB", "MB", "GB", "TB"];

/** A size in bytes as people read it: "812 B", "2.4 MB", "18 MB" (1 KB is 1000 bytes). */
export function formatSize(bytes, language) {
    if (!Number.isFinite(bytes) || bytes < 0) return "";
    let unit = 0;
    let value = bytes;
    // What would be shown as "1000 KB" is shown as "1.0 MB".
    while (value >= 999.5 && unit + 1 < units.length) {
        value /= 1000;
        unit += 1;
    }
    const digits = unit > 0 && value < 9.95 ? 1 : 0;
    const number = new Intl.NumberFormat(locales[language], {
        minimumFractionDigits: digits,
        maximumFractionDigits: digits,
    }).format(value);
    return `${number}\u00a0${units[unit]}`;
}

/** A date as the service writes it (ISO text) in the language's medium form; as it came if it is none. */
export function formatDate(created, language) {
    const date = new Date(created ?? NaN);
    if (Number.isNaN(date.getTime())) return String(created ?? "");
    return new Intl.DateTimeFormat(locales[language], { dateStyle: "medium", timeStyle: "short" }).format(
        date,
    );
}

/** Names in a row: "A, B and C". */
export function formatList(names, language) {
    return new Intl.ListFormat(locales[language]).format(names);
}

/** A running time: "8 s", "2 min 05 s". */
export function formatElapsed(milliseconds) {
    const seconds = Math.max(0, Math.floor(milliseconds / 1000));
    if (seconds < 60) return `${seconds}\u00a0s`;
    return `${Math.floor(seconds / 60)}\u00a0min ${String(seconds % 60).padStart(2, "0")}\u00a0s`;
}
