/**
 * Reads what the host says about itself, "language,service address,add-on version,host version".
 * Gives { language, apiBase, addOnVersion, hostVersion }, or null when the text is something else.
 */
export function readHostInfo(text) {
    const fields = String(text).split(",");
    if (fields.length < 4) return null;
    const language = fields.shift().trim();
    const hostVersion = fields.pop().trim();
    const addOnVersion = fields.pop().trim();
    const apiBase = fields.join(",").trim();
    if (!/^https?:\/\/[^/]/.test(apiBase)) return null;
    return { language, apiBase: apiBase.endsWith("/") ? apiBase : `${apiBase}/`, addOnVersion, hostVersion };
}

/** Whether the address is on the machine itself. */
export function isLoopback(address) {
    const { hostname } = new URL(address);
    return hostname === "localhost" || hostname === "[::1]" || /^127(\.\d+){3}$/.test(hostname);
}
