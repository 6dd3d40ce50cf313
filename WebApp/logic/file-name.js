const forbidden = /[\p{Cc}\p{Cs}\u2028\u2029/\\:*?"<>|]/u;
const allForbidden = new RegExp(forbidden, "gu");
const longestName = 200;
const encoder = new TextEncoder();

/**
 * Checks what a person typed as the name of a file with this extension.
 * Gives { name } without the extension and outer blanks, and with it { problem } when the name cannot be used:
 * "empty", "character", "dots" or "long" (more than 200 bytes in UTF-8).
 */
export function checkFileName(typed, extension = "ifc") {
    const name = without(extension, typed.trim());
    return { name, problem: nameProblem(name) };
}

function without(extension, name) {
    const end = `.${extension}`;
    return name.toLowerCase().endsWith(end) ? name.slice(0, -end.length) : name;
}

/** What is wrong with a name, as of checkFileName, or null. */
export function nameProblem(name) {
    if (name.trim() === "") return "empty";
    if (forbidden.test(name)) return "character";
    if (name.startsWith(".") || name.includes("..") || /[. ]$/.test(name)) return "dots";
    if (encoder.encode(name).length > longestName) return "long";
    return null;
}

/** The name proposed for a project: usable as it stands, or empty when the project has no name. */
export function proposedFileName(projectName) {
    const cleaned = projectName
        .replace(allForbidden, "-")
        .replace(/\.{2,}/g, ".")
        .trim();
    const usable = without("ifc", cleaned).replace(/^\.+|[. ]+$/g, "");
    const { read } = encoder.encodeInto(usable, new Uint8Array(longestName));
    return usable.slice(0, read).replace(/[. ]+$/, "");
}
