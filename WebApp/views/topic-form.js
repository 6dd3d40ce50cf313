import { element } from "../dom.js";
import { text } from "../text.js";

/** The form for a new issue. create({ title, description }) asks the service; created gets what it made. */
export function topicForm({ create, created, cancelled }) {
    const title = element("input", {
        id: "topic-title",
        autocomplete: "off",
        maxlength: 255,
        "aria-describedby": "topic-problem",
    });
    const description = element("textarea", { id: "topic-description", rows: 3, maxlength: 10000 });
    const problem = element("p", { id: "topic-problem", class: "problem", role: "alert" });
    const submit = element("button", { id: "create-topic", class: "primary" }, text("topics.create"));
    const cancel = element(
        "button",
        { id: "cancel-topic", type: "button", class: "plain", onclick: cancelled },
        text("topics.cancel"),
    );

    async function start(event) {
        event.preventDefault();
        if (submit.disabled) return;
        const filled = { title: title.value.trim(), description: description.value.trim() };
        problem.textContent = filled.title ? "" : text("topics.nameless");
        if (!filled.title) {
            title.focus();
            return;
        }
        submit.disabled = true;
        try {
            created(await create(filled));
        } catch (error) {
            problem.textContent = error.message;
        } finally {
            submit.disabled = false;
        }
    }

    const view = element(
        "form",
        {
            id: "topic-form",
            hidden: true,
            novalidate: true,
            "aria-label": text("topics.new"),
            onsubmit: start,
            onkeydown: (event) => event.key === "Escape" && cancelled(),
        },
        element("label", { for: "topic-title" }, text("topics.title")),
        title,
        element("label", { for: "topic-description" }, text("topics.description")),
        description,
        problem,
        element("div", { class: "line" }, submit, cancel),
    );
    const ready = () => {
        title.value = description.value = problem.textContent = "";
        title.focus();
    };
    return { view, ready };
}
