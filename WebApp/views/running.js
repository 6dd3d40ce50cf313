import { element } from "../dom.js";
import { formatElapsed } from "../logic/format.js";
import { text } from "../text.js";

const patience = 60000; // after this long the person may stop waiting

/**
 * What is under way since `now.since` in the Value `status`, with the time that it takes. stop() ends the
 * waiting; without it the person cannot.
 */
export function running({ now, status, said, help, stop, signal }) {
    // Not announced: a count read out every second would drown everything else.
    const elapsed = element("span", { class: "elapsed", "aria-hidden": "true" });
    const end = element(
        "button",
        { type: "button", class: "link", hidden: true, onclick: stop },
        text("upload.stop"),
    );
    const tick = () => {
        const time = Date.now() - now.since;
        elapsed.textContent = formatElapsed(time);
        end.hidden = !stop || time < patience;
        if (signal.aborted || status.get() !== now) clearInterval(timer);
    };
    const timer = setInterval(tick, 1000);
    tick();
    return element(
        "div",
        { class: "running" },
        element("div", { class: "between" }, element("span", {}, said), elapsed),
        element("div", { class: "bar" }),
        element("div", { class: "between quiet" }, element("span", {}, help), end),
    );
}
