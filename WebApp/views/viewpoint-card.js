import { element, iconButton } from "../dom.js";
import { readElements } from "../logic/elements.js";
import { formatDate } from "../logic/format.js";
import { language, text } from "../text.js";
import { elementList } from "./element-list.js";
import { picture } from "./picture.js";

/** One viewpoint of the open issue; `removed` is called when the person has deleted it. */
export function viewpointCard({ id, snapshot, created, author }, parts) {
    const { host, service, viewpoints, selection, pictures, topicId, signal, removed } = parts;
    const when = formatDate(created, language());

    const open = element(
        "button",
        { type: "button", class: "open-viewpoint", disabled: !host, onclick: openThis },
        picture(snapshot, pictures, text("viewpoints.picture", { when })),
        host ? element("span", { class: "caption" }, text("viewpoints.open")) : null,
    );
    const problem = element("p", { class: "problem", role: "alert" });
    const selected = element("div", {});
    const details = element(
        "details",
        { class: "viewpoint-elements", ontoggle: () => details.open && loadElements() },
        element("summary", {}, text("viewpoints.elements")),
        selected,
    );
    const remove = iconButton("trash", text("viewpoints.delete"), () => confirm(true), {
        class: "icon-button delete-viewpoint",
    });
    const confirmation = element(
        "div",
        { class: "line confirmation", hidden: true },
        element("span", {}, text("viewpoints.deleteQuestion")),
        element(
            "button",
            { type: "button", class: "link confirm-delete", onclick: removeThis },
            text("viewpoints.delete"),
        ),
        element(
            "button",
            { type: "button", class: "link", onclick: () => confirm(false) },
            text("topics.cancel"),
        ),
    );
    let filled = false;

    function confirm(asked) {
        confirmation.hidden = !asked;
        remove.disabled = asked;
        (asked ? confirmation.lastChild : remove).focus();
    }

    async function openThis() {
        const viewpoint = await viewpoints.open(topicId, id);
        if (!viewpoint) return;
        fill(viewpoint);
        details.open = true;
    }

    async function loadElements() {
        if (filled) return;
        selected.replaceChildren(element("p", { class: "quiet" }, text("places.loading")));
        try {
            fill(await viewpoints.read(id));
        } catch (error) {
            selected.replaceChildren(element("p", { class: "problem", role: "alert" }, error.message));
        }
    }

    function fill(viewpoint) {
        filled = true;
        const elements = readElements(viewpoint?.selectedGlobalIds);
        const show = host ? (ifcGuid) => selection.show(ifcGuid) : null;
        selected.replaceChildren(
            ...(elements.length
                ? elementList(elements, show)
                : [element("p", { class: "quiet" }, text("viewpoints.noElements"))]),
        );
    }

    async function removeThis() {
        problem.textContent = "";
        try {
            await service.deleteViewpoint(id);
            await removed();
        } catch (error) {
            problem.textContent = error.message;
            confirm(false);
        }
    }

    const card = element(
        "li",
        { "data-viewpoint-id": id },
        open,
        element(
            "div",
            { class: "between" },
            element(
                "span",
                { class: "quiet" },
                [when, author ? text("documents.by", { author }) : ""].filter(Boolean).join(" · "),
            ),
            remove,
        ),
        confirmation,
        problem,
        details,
    );
    viewpoints.status.watch((now) => {
        open.disabled = !host || now.state === "working";
        card.classList.toggle("current", now.state === "done" && now.viewpointId === id);
    }, signal);
    return card;
}
