import { element, icon, iconButton, notice } from "../dom.js";
import { formatDate, formatSize } from "../logic/format.js";
import { language, text } from "../text.js";
import { modelOpeningView } from "./model-opening.js";

/** The IFC models of the chosen project; with a host around the page, they can be ticked and opened there. */
export function modelsView({ service, host, upload, modelWork, modelChoices, chosenProject, view, signal }) {
    let question = 0;
    let rows = [];

    const count = element("span", { class: "count" });
    const refresh = iconButton("refresh", text("models.refresh"), () => load(), { id: "refresh-models" });
    const said = element("div", { role: "status" });
    const list = element("ul", { id: "models", class: "rows", "aria-labelledby": "models-heading" });
    const opening = host ? modelOpeningView({ modelWork, signal }) : null;

    const tell = () => opening?.choose(rows.filter((row) => row.isTicked()), rows.length > 0);

    function show(models) {
        rows = models.map((model) => modelRow(model, Boolean(host), modelChoices, tell));
        count.textContent = models.length || "";
        list.replaceChildren(...rows.map((row) => row.view));
        said.replaceChildren(...(models.length ? [] : [empty()]));
        tell();
    }

    async function load() {
        const asked = ++question;
        const project = chosenProject.get();
        refresh.disabled = !project;
        if (!project) {
            show([]);
            said.replaceChildren(element("p", { class: "quiet" }, text("models.noProject")));
            return;
        }
        list.setAttribute("aria-busy", "true");
        if (!rows.length) said.replaceChildren(element("p", { class: "quiet" }, text("models.loading")));
        try {
            const models = await service.models(project.id);
            if (asked === question) show(models);
        } catch (error) {
            if (asked !== question) return;
            const retry = element(
                "button",
                { type: "button", class: "link", onclick: () => load() },
                text("models.retry"),
            );
            said.replaceChildren(notice("failed", error.message, retry));
        } finally {
            if (asked === question) list.removeAttribute("aria-busy");
        }
    }

    const loadIfShown = () => view.get() === "models" && load();
    chosenProject.watch(() => {
        question += 1;
        show([]);
        loadIfShown();
    }, signal);
    view.watch(loadIfShown, signal);
    upload.status.watch(({ state }) => state === "done" && loadIfShown(), signal);

    return element(
        "section",
        { class: "card" },
        element(
            "div",
            { class: "between" },
            element("h2", { id: "models-heading" }, text("models.heading"), count),
            refresh,
        ),
        said,
        list,
        opening?.view,
    );
}

const keyOf = ({ name, extension, folder }) => JSON.stringify([folder.id, name, extension]);

// modelChoices: { ticked, older } by the models' keys; older is the id of a version that was chosen on purpose.
function modelRow(model, canTick, modelChoices, changed) {
    const { name, extension, folder, versions } = model;
    const latest = versions[0];
    const key = keyOf(model);
    const box = element("input", { type: "checkbox", onchange: keep });
    const facts = element("span", { class: "quiet" });
    const origin = element("span", { class: "quiet" });
    const choice = element(
        "select",
        { "aria-label": text("models.versionOf", { name }), onchange: keep },
        ...versions.map(({ id, version }) =>
            element("option", { value: id }, text("documents.version", { version })),
        ),
    );
    const chosen = () => versions.find(({ id }) => String(id) === choice.value) ?? latest;

    function describe() {
        const { size, created, author } = chosen();
        const suffix = extension === "ifc" ? "" : `.${extension}`;
        facts.textContent = [folder.name, formatSize(size, language()), suffix].filter(Boolean).join(" · ");
        origin.textContent = `${formatDate(created, language())} · ${text("documents.by", { author })}`;
    }

    function keep() {
        modelChoices.set(key, { ticked: box.checked, older: chosen() === latest ? null : chosen().id });
        describe();
        changed();
    }

    const kept = modelChoices.get(key);
    box.checked = kept?.ticked ?? false;
    if (versions.some(({ id }) => id === kept?.older)) choice.value = kept.older;
    describe();

    const title = element("span", { class: "name", title: name }, name);
    const described = element("span", { class: "facts" }, title, facts, origin);
    return {
        key,
        model,
        version: chosen,
        isTicked: () => box.checked,
        view: element(
            "li",
            { "data-model-name": name },
            canTick ? element("label", { class: "check" }, box, described) : described,
            element("div", { class: "select" }, choice),
        ),
    };
}

function empty() {
    return element(
        "div",
        { class: "empty" },
        icon("model"),
        element("p", {}, text("models.empty")),
        element("p", { class: "quiet" }, text("models.emptyHelp")),
    );
}
