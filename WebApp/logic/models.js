const forbidden = /[^\p{L}\p{M}\p{Nd} _-]/gu;
const longest = { characters: 80, bytes: 200 }; // file systems take names of 255 bytes

/**
 * The name under which the host keeps a model's file. It becomes part of a path, and a file that is there is
 * never fetched again, so the name is harmless and no other version's: the model's name as far as it can be
 * used, and the beginning of the version's id.
 */
export function localName(name, id) {
    let kept = "";
    for (const character of [...harmless(name)].slice(0, longest.characters)) {
        if (new TextEncoder().encode(kept + character).length > longest.bytes) break;
        kept += character;
    }
    return `${kept}-${harmless(String(id).slice(0, 8))}`;
}

const harmless = (text) => text.normalize("NFC").trim().replace(forbidden, "_");

/** What the host is told of a model of the service's list and one of its versions. */
export function modelInfo({ name, extension }, { id, version }) {
    return { id: String(id), name: localName(name, id), version, extension };
}

/** The host's name for the project that it opens from this model's file. */
export const projectNameOf = ({ name, version }) => `${name}-V${version}`;

export const fileNameOf = (info) => `${projectNameOf(info)}.${info.extension}`;
