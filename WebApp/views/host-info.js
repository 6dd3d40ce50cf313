import { element } from "../dom.js";
import { text } from "../text.js";

/** The footer: what the host says about itself. */
export function hostInfoView({ info, service, project, signal }) {
    const projectName = element("dd");
    project.watch((name) => {
        projectName.textContent = name || text("host.none");
    }, signal);

    const facts = [[text("host.service"), element("dd", {}, service.base)]];
    if (info) {
        facts.unshift([text("host.project"), projectName]);
        facts.push(
            [text("host.language"), element("dd", {}, `${text("host.languageName")} (${info.language})`)],
            [text("host.addOnVersion"), element("dd", {}, info.addOnVersion)],
            [text("host.hostVersion"), element("dd", {}, info.hostVersion)],
        );
    }
    return element(
        "footer",
        { id: "host-info", "aria-label": text("host.heading") },
        element("dl", {}, ...facts.map(([term, fact]) => element("div", {}, element("dt", {}, term), fact))),
    );
}
