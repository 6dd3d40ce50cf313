const icons = {
    plus: '<path d="M8 3.5v9M3.5 8h9"/>',
    upload: '<path d="M8 10.5V3M5 5.8 8 2.8l3 3M2.8 10.5v2.2h10.4v-2.2"/>',
    download: '<path d="M8 2.8v7.5M5 7.5l3 3 3-3M2.8 10.8v2.2h10.4v-2.2"/>',
    refresh: '<path d="M13 8a5 5 0 1 1-1.5-3.6M13 2.5v2.7h-2.7"/>',
    check: '<path d="m3.5 8.5 3 3 6-7"/>',
    alert: '<path d="M8 4.5v4.3M8 11.3v.2"/>',
    info: '<path d="M8 4.2v.2M8 7.2v4.3"/>',
    close: '<path d="m4 4 8 8M12 4l-8 8"/>',
    model: '<path d="m8 1.8 5.4 3.1v6.2L8 14.2l-5.4-3.1V4.9zM2.6 4.9 8 8l5.4-3.1M8 8v6.2"/>',
    folder: '<path d="M1.8 12.5v-9h4.4l1.5 1.8h6.5v7.2z"/>',
    issue: '<path d="M2.5 2.8h11v8h-6l-3 2.7v-2.7h-2zM8 5v2.3M8 8.9v.1"/>',
    view: '<path d="M1.8 3h12.4v10H1.8zM2 11.4l3.7-3.7 2.6 2.6 2-2 3.7 3.6M10.6 5.8v.1"/>',
    camera: '<path d="M1.8 4.8h3l1.2-1.9h4l1.2 1.9h3v7.7H1.8zM8 10.6a2.2 2.2 0 1 0 0-4.4 2.2 2.2 0 0 0 0 4.4z"/>',
    back: '<path d="M10 3 5 8l5 5"/>',
    trash: '<path d="M2.8 4.3h10.4M6.3 4.2V2.7h3.4v1.5M4.2 4.5l.6 8.8h6.4l.6-8.8"/>',
    plan: '<path d="M2.2 2.2h11.6v11.6H2.2zM2.2 8.6h4.2M9 8.6h4.8M9 8.6v2M9 13.6v-.4M6.4 2.2v3.4"/>',
    mapping: '<path d="M1.8 2.8h4.7v4H1.8zM9.5 9.2h4.7v4H9.5zM6.5 4.8h3.3a2 2 0 0 1 2 2v2.4"/>',
    publish: '<path d="M3.2 14.2V1.8h6.3l3.3 3.3v9.1zM9.3 2v3.3h3.3M8 11.8V7.6M6.2 9.2 8 7.4l1.8 1.8"/>',
    element: '<path d="m8 2.5 4.8 2.7v5.6L8 13.5l-4.8-2.7V5.2z"/>',
    select: '<path d="m3.5 2.8 9.3 4.2-4.1 1.4-1.5 4.3z"/>',
    signOut: '<path d="M6.5 13.2H3V2.8h3.5M10 5l3 3-3 3M13 8H6.5"/>',
};

/** A new element. Attributes: functions listen ("onclick"), true sets, false and null leave out. */
export function element(tag, attributes = {}, ...children) {
    const made = document.createElement(tag);
    for (const [name, value] of Object.entries(attributes)) {
        if (typeof value === "function") made.addEventListener(name.slice(2), value);
        else if (value !== false && value !== null && value !== undefined) {
            made.setAttribute(name, value === true ? "" : value);
        }
    }
    made.append(...children.filter((child) => child !== null && child !== undefined));
    return made;
}

/** A decorative line drawing of 16 by 16. */
export function icon(name) {
    const holder = document.createElement("template");
    holder.innerHTML = `<svg class="icon" viewBox="0 0 16 16" aria-hidden="true">${icons[name]}</svg>`;
    return holder.content.firstChild;
}

/** A button of one icon; its label is spoken and shown as a tooltip. */
export function iconButton(name, label, onclick, attributes = {}) {
    return element(
        "button",
        { type: "button", class: "icon-button", "aria-label": label, title: label, onclick, ...attributes },
        icon(name),
    );
}

/** The product's mark. */
export function mark(size) {
    return element("img", { src: "mark.svg", alt: "", width: size, height: size });
}

/** A message box: kind "failed", "done" or "note". */
export function notice(kind, ...content) {
    const sign = { failed: "alert", done: "check", note: "info" }[kind];
    return element(
        "div",
        { class: `notice ${kind}` },
        element("span", { class: "sign" }, icon(sign)),
        element("div", { class: "notice-text" }, ...content),
    );
}
