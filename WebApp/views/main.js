import { element, icon, mark, notice } from "../dom.js";
import { text } from "../text.js";
import { documentsView } from "./documents.js";
import { exportHistoryView } from "./export-history.js";
import { hostInfoView } from "./host-info.js";
import { issuesView } from "./issues.js";
import { mappingView } from "./mapping.js";
import { modelsView } from "./models.js";
import { placesView } from "./places.js";
import { plansView } from "./plans.js";
import { publishItemsView } from "./publish-items.js";
import { publishSetsView } from "./publish-sets.js";
import { selectionView } from "./selection.js";
import { tabsView } from "./tabs.js";
import { uploadView } from "./upload.js";

/** The screen of a signed-in person. Its parts stop watching when `parts.signal` aborts. */
export function mainView({ user, onSignOut, ...parts }) {
    const { host, view, signal } = parts;
    const canPublish = Boolean(host?.canPublish());
    const canMakePlans = Boolean(host?.canMakePlans());
    const canMap = Boolean(host?.canMap());
    const shownIn = (names, content) => {
        view.watch((shown) => (content.hidden = ![names].flat().includes(shown)), signal);
        return content;
    };
    const main = element(
        "main",
        {},
        element(
            "div",
            { class: "column" },
            placesView(parts),
            shownIn("mapping", canMap ? mappingView(parts) : cannot(host, "mapping")),
            shownIn(
                canMap ? ["documents", "mapping"] : "documents",
                host ? uploadView(parts) : noHost(text("noHost.body")),
            ),
            shownIn("plans", canMakePlans ? plansView(parts) : cannot(host, "plans")),
            shownIn("publish", canPublish ? publishSetsView(parts) : cannot(host, "publish")),
            host ? null : shownIn("models", noHost(text("noHost.models"))),
            host ? null : shownIn("issues", noHost(text("noHost.issues"))),
            shownIn("issues", issuesView(parts)),
        ),
        element(
            "div",
            { class: "column" },
            shownIn(["documents", "plans", "mapping"], documentsView(parts)),
            canPublish ? shownIn("publish", publishItemsView(parts)) : null,
            canPublish ? shownIn("publish", exportHistoryView(parts)) : null,
            shownIn("models", modelsView(parts)),
            host ? shownIn("issues", selectionView(parts)) : null,
        ),
    );
    view.watch((shown) => (main.dataset.view = shown), signal);
    return element(
        "div",
        { class: "page" },
        header(user, onSignOut),
        tabsView(parts),
        main,
        hostInfoView(parts),
    );
}

function header(user, onSignOut) {
    return element(
        "header",
        {},
        mark(28),
        element("h1", {}, "Kestrane"),
        element(
            "span",
            { class: "user", title: text("signIn.as", { user }) },
            element("span", { class: "initial", "aria-hidden": "true" }, [...user][0]?.toUpperCase() ?? ""),
            element("span", { class: "user-name" }, user),
        ),
        element(
            "button",
            { id: "sign-out", type: "button", class: "plain", onclick: onSignOut },
            icon("signOut"),
            text("signIn.out"),
        ),
    );
}

function cannot(host, work) {
    if (!host) return noHost(text(`noHost.${work}`));
    return notice("note", element("strong", {}, text("publish.tooOldTitle")), text(`${work}.tooOld`));
}

function noHost(body) {
    return notice("note", element("strong", {}, text("noHost.title")), body);
}
