import { element, icon, iconButton, notice } from "../dom.js";
import { formatDate } from "../logic/format.js";
import { language, text } from "../text.js";
import { picture } from "./picture.js";
import { topicForm } from "./topic-form.js";

/** The project's issues, open ones first; `topic` becomes the one that is opened. load(id) asks again. */
export function topicListView({ service, pictures, chosenProject, topic, signal }) {
    let question = 0;

    const count = element("span", { class: "count" });
    const add = element(
        "button",
        { id: "new-topic", type: "button", class: "plain", onclick: () => showForm(true) },
        icon("plus"),
        text("topics.new"),
    );
    const refresh = iconButton("refresh", text("topics.refresh"), () => load(), { id: "refresh-topics" });
    const form = topicForm({
        create: (filled) => service.createTopic(chosenProject.get().id, filled),
        created(made) {
            showForm(false);
            topic.set(made);
        },
        cancelled: () => showForm(false),
    });
    const said = element("div", { role: "status" });
    const list = element("ul", { id: "topics", "aria-labelledby": "topics-heading" });

    function showForm(shown) {
        form.view.hidden = !shown;
        add.disabled = shown || !chosenProject.get();
        if (shown) form.ready();
        else if (list.isConnected) add.focus();
    }

    function show(topics) {
        const open = topics.filter(({ status }) => status !== "closed");
        const closed = topics.filter(({ status }) => status === "closed");
        count.textContent = open.length || "";
        list.replaceChildren(...[...open, ...closed].map((one) => row(one, pictures, () => topic.set(one))));
        said.replaceChildren(...(topics.length ? [] : [empty()]));
    }

    /** Asks for the list; the row of the issue that was left gets the focus. */
    async function load(left) {
        const asked = ++question;
        const project = chosenProject.get();
        add.disabled = refresh.disabled = !project;
        if (!project) {
            show([]);
            said.replaceChildren(element("p", { class: "quiet" }, text("topics.noProject")));
            return;
        }
        list.setAttribute("aria-busy", "true");
        if (!list.hasChildNodes()) {
            said.replaceChildren(element("p", { class: "quiet" }, text("topics.loading")));
        }
        try {
            const topics = await service.topics(project.id);
            if (asked !== question) return;
            show(topics);
            list.querySelector(`[data-topic-id="${CSS.escape(left ?? "")}"] button`)?.focus();
        } catch (error) {
            if (asked !== question) return;
            const retry = element(
                "button",
                { type: "button", class: "link", onclick: () => load() },
                text("topics.retry"),
            );
            said.replaceChildren(notice("failed", error.message, retry));
        } finally {
            if (asked === question) list.removeAttribute("aria-busy");
        }
    }

    chosenProject.watch(() => {
        list.replaceChildren();
        form.view.hidden = true;
        load();
    }, signal);

    const view = element(
        "section",
        { class: "card" },
        element(
            "div",
            { class: "between" },
            element("h2", { id: "topics-heading" }, text("topics.heading"), count),
            element("div", { class: "line tools" }, add, refresh),
        ),
        form.view,
        said,
        list,
    );
    return { view, load };
}

function empty() {
    return element(
        "div",
        { class: "empty" },
        icon("issue"),
        element("p", {}, text("topics.empty")),
        element("p", { class: "quiet" }, text("topics.emptyHelp")),
    );
}

function row({ id, title, status, created, author, viewpoints, snapshot }, pictures, onclick) {
    const facts = [text("topics.viewpoints", { count: viewpoints }), formatDate(created, language())];
    return element(
        "li",
        { "data-topic-id": id, "data-status": status },
        element(
            "button",
            { type: "button", onclick },
            picture(snapshot, pictures, ""),
            element(
                "span",
                { class: "facts" },
                element("span", { class: "name" }, title),
                status === "closed" ? element("span", { class: "badge" }, text("topics.closed")) : null,
                element("span", { class: "quiet" }, facts.join(" · ")),
                element("span", { class: "quiet" }, text("documents.by", { author })),
            ),
        ),
    );
}
