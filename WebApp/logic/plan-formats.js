/** What a plan can be made as: `kind` is the host's number for it, `id` names its texts. */
export const planFormats = [
    { id: "dwg", kind: 1, name: "DWG", extension: "dwg" },
    { id: "pdf", kind: 4, name: "PDF", extension: "pdf" },
    { id: "png", kind: 2, name: "PNG", extension: "png" },
    { id: "jpeg", kind: 3, name: "JPEG", extension: "jpg" },
];

/** The format with this id, or the first one. */
export const planFormat = (id) => planFormats.find((format) => format.id === id) ?? planFormats[0];
