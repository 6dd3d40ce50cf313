import { element, icon, notice } from "../dom.js";
import { formatDate } from "../logic/format.js";
import { language, text } from "../text.js";
import { viewpointCard } from "./viewpoint-card.js";
import { viewpointStatus } from "./viewpoint-status.js";

/** One issue with its viewpoints; `topic` becomes null to leave it. */
export function topicView(parts) {
    const { host, service, viewpoints, chosenProject, topic, signal } = parts;
    const { id, title, description, created, author } = topic.get();
    let question = 0;

    const back = element(
        "button",
        { id: "back-to-topics", type: "button", class: "plain", onclick: () => topic.set(null) },
        icon("back"),
        text("topics.back"),
    );
    const heading = element("h2", { id: "topic-heading", tabindex: -1 }, title);
    const badge = element("span", { class: "badge" }, text("topics.closed"));
    const toggle = element("button", {
        id: "toggle-topic-status",
        type: "button",
        class: "plain",
        onclick: changeStatus,
    });
    const problem = element("p", { class: "problem", role: "alert" });
    const take = element(
        "button",
        {
            id: "new-viewpoint",
            type: "button",
            class: "primary wide",
            onclick: () => viewpoints.take(chosenProject.get().id, id),
        },
        icon("camera"),
        text("viewpoints.new"),
    );
    const said = element("div", { role: "status" });
    const list = element("ul", { id: "viewpoints", "aria-label": text("viewpoints.heading") });

    function show(all) {
        const known = new Map([...list.children].map((card) => [card.dataset.viewpointId, card]));
        const card = (one) => viewpointCard(one, { ...parts, topicId: id, removed: load });
        list.replaceChildren(...all.map((one) => known.get(one.id) ?? card(one)));
        said.replaceChildren(...(all.length ? [] : [empty(host)]));
    }

    async function load() {
        const asked = ++question;
        if (!list.hasChildNodes()) {
            said.replaceChildren(element("p", { class: "quiet" }, text("viewpoints.loading")));
        }
        try {
            const all = await service.viewpoints(id);
            if (asked === question) show(all.reverse());
        } catch (error) {
            if (asked !== question) return;
            const retry = element(
                "button",
                { type: "button", class: "link", onclick: load },
                text("topics.retry"),
            );
            said.replaceChildren(notice("failed", error.message, retry));
        }
    }

    async function changeStatus() {
        const next = topic.get().status === "closed" ? "open" : "closed";
        toggle.disabled = true;
        problem.textContent = "";
        try {
            const changed = await service.setTopicStatus(id, next);
            if (!signal.aborted) topic.set(changed);
        } catch (error) {
            problem.textContent = error.message;
        } finally {
            toggle.disabled = false;
        }
    }

    topic.watch((now) => {
        if (now?.id !== id) return;
        badge.hidden = now.status !== "closed";
        toggle.textContent = text(now.status === "closed" ? "topics.reopen" : "topics.close");
    }, signal);
    viewpoints.status.watch(({ state }) => (take.disabled = state === "working"), signal);
    viewpoints.stored.watch((stored) => stored?.topicId === id && load(), signal);
    load();

    const view = element(
        "section",
        { class: "card topic", "data-topic-id": id, "aria-labelledby": "topic-heading" },
        element("div", { class: "between" }, back, toggle),
        element("div", { class: "topic-title" }, heading, badge),
        element(
            "p",
            { class: "quiet" },
            [formatDate(created, language()), text("documents.by", { author })].join(" · "),
        ),
        description ? element("p", { class: "description" }, description) : null,
        problem,
        host ? take : null,
        viewpointStatus({ viewpoints, topicId: id, signal }),
        said,
        list,
    );
    return { view, ready: () => heading.focus() };
}

function empty(host) {
    return element(
        "div",
        { class: "empty" },
        icon("view"),
        element("p", {}, text("viewpoints.empty")),
        host ? element("p", { class: "quiet" }, text("viewpoints.emptyHelp")) : null,
    );
}
