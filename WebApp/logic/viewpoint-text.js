const id = /^[\w-]{1,64}$/;

/**
 * Reads the host's viewpoint text. Gives { viewpoint, snapshot } with the parsed object and its picture's id, or
 * { refusal }: the service's own words when it refused the picture, since the host then puts the refusal where
 * the id belongs, or empty when there are none.
 */
export function readViewpointText(text) {
    let viewpoint = null;
    try {
        viewpoint = JSON.parse(text);
    } catch {
        return { refusal: refusalIn(text) };
    }
    const snapshot = viewpoint?.imageId;
    if (typeof snapshot === "string" && id.test(snapshot)) return { viewpoint, snapshot };
    return { refusal: "" };
}

// The refusal {"error":"..."} stands unescaped inside of the text, which is no JSON for that reason.
function refusalIn(text) {
    const body = /"imageId":"(\{[\s\S]*?\})\s*","creatingTool":/.exec(text)?.[1];
    try {
        const { error } = JSON.parse(body);
        return typeof error === "string" ? error : "";
    } catch {
        return "";
    }
}
