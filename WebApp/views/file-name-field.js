import { element } from "../dom.js";
import { checkFileName } from "../logic/file-name.js";
import { text } from "../text.js";

/** A field for a file's name without its extension. changed() is called when the person has typed. */
export function fileNameField({ id, changed }) {
    let extension = "";

    const input = element("input", {
        id,
        autocomplete: "off",
        spellcheck: "false",
        "aria-describedby": `${id}-problem`,
        oninput: typed,
        onchange: tidy,
    });
    const suffix = element("span", { "aria-hidden": "true" });
    const problem = element("p", { class: "problem", id: `${id}-problem`, role: "alert" });

    const check = () => checkFileName(input.value, extension);

    function show(code) {
        problem.textContent = code ? text(`fileName.${code}`) : "";
        input.setAttribute("aria-invalid", String(Boolean(code)));
    }

    function typed() {
        changed();
        show(input.value.trim() ? check().problem : null);
    }

    function tidy() {
        input.value = check().name;
        typed();
    }

    return {
        view: [
            element("label", { for: id }, text("upload.fileName")),
            element("div", { class: "suffixed" }, input, suffix),
            problem,
        ],
        value: () => input.value,
        setValue(name) {
            if (input.value === name) return;
            input.value = name;
            show(null);
        },
        setExtension(next) {
            extension = next;
            suffix.textContent = `.${next}`;
        },
        /** The name when it can be used; otherwise null, and the person is told what is wrong. */
        usable() {
            tidy();
            const { name, problem: code } = check();
            show(code);
            if (!code) return name;
            input.focus();
            return null;
        },
    };
}
