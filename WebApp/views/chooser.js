import { element, iconButton } from "../dom.js";
import { text } from "../text.js";

/**
 * A labelled choice among named things, with a line to create a new one.
 * `words` are the keys of the texts: label, none, add, name. list() and create(name) ask the service;
 * chosen(thing or null) is told of each new choice. Answers that come after a later question are dropped.
 */
export function chooser({ id, words, list, create, chosen }) {
    let things = [];
    let question = 0;

    const select = element("select", { id, disabled: true, onchange: () => chosen(current()) });
    const add = iconButton("plus", text(words.add), () => showCreation(true), {
        id: `new-${id}`,
        disabled: true,
    });
    const name = element("input", { id: `${id}-name`, "aria-label": text(words.name), maxlength: 120 });
    const submit = element("button", { class: "primary" }, text("places.create"));
    const cancel = iconButton("close", text("places.cancel"), () => showCreation(false));
    const creation = element("form", { class: "line", novalidate: true, hidden: true }, name, submit, cancel);
    const said = element("p", { class: "problem", role: "alert" });
    const choice = element("div", { class: "line" }, element("div", { class: "select" }, select), add);
    const retry = element("button", { type: "button", class: "link" }, text("places.retry"));
    const label = element("label", { for: id }, text(words.label));
    const view = element("div", { class: "field" }, label, choice, creation, said);

    creation.addEventListener("submit", createNew);
    creation.addEventListener("keydown", (event) => {
        if (event.key === "Escape") showCreation(false);
    });

    const current = () => things.find((thing) => String(thing.id) === select.value) ?? null;

    function showCreation(shown) {
        creation.hidden = !shown;
        choice.hidden = shown;
        said.replaceChildren();
        name.value = "";
        name.placeholder = text(words.name);
        (shown ? name : add).focus();
    }

    function showOnly(placeholder) {
        select.replaceChildren(element("option", { value: "" }, placeholder));
        select.disabled = true;
    }

    function fill(preferred) {
        if (things.length === 0) {
            showOnly(text(words.none));
            return;
        }
        select.replaceChildren(...things.map((thing) => element("option", { value: thing.id }, thing.name)));
        if (things.some((thing) => String(thing.id) === String(preferred))) select.value = preferred;
        select.disabled = false;
    }

    /** Asks for the list again and chooses the preferred thing, or else the first. */
    async function load(preferred) {
        const asked = ++question;
        things = [];
        said.replaceChildren();
        showOnly(text("places.loading"));
        add.disabled = true;
        creation.hidden = true;
        choice.hidden = false;
        chosen(null);
        try {
            const answer = await list();
            if (asked !== question) return;
            things = answer;
        } catch (error) {
            if (asked !== question) return;
            showOnly(text("places.unavailable"));
            retry.onclick = () => load(preferred);
            said.replaceChildren(error.message, " ", retry);
            return;
        }
        add.disabled = false;
        fill(preferred);
        chosen(current());
    }

    function clear() {
        question += 1;
        things = [];
        said.replaceChildren();
        add.disabled = true;
        showOnly("–");
        chosen(null);
    }

    async function createNew(event) {
        event.preventDefault();
        if (submit.disabled) return;
        const wanted = name.value.trim();
        const taken = things.some((thing) => thing.name === wanted);
        if (!wanted || taken) {
            said.replaceChildren(text(taken ? "error.exists" : "places.nameless"));
            name.focus();
            return;
        }
        submit.disabled = true;
        const asked = question;
        try {
            const made = await create(wanted);
            if (asked !== question) return;
            things = [...things, made];
            fill(made.id);
            showCreation(false);
            select.focus();
            chosen(made);
        } catch (error) {
            if (asked === question) said.replaceChildren(error.message);
        } finally {
            submit.disabled = false;
        }
    }

    return { view, load, clear };
}
