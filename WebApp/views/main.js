import { element, icon, mark, notice } from "../dom.js";
import { text } from "../text.js";
import { documentsView } from "./documents.js";
import { hostInfoView } from "./host-info.js";
import { placesView } from "./places.js";
import { uploadView } from "./upload.js";

/** The screen of a signed-in person. Its parts stop watching when `parts.signal` aborts. */
export function mainView({ user, onSignOut, ...parts }) {
    const work = parts.host ? uploadView(parts) : noHost();
    return element(
        "div",
        { class: "page" },
        header(user, onSignOut),
        element(
            "main",
            {},
            element("div", { class: "column" }, placesView(parts), work),
            element("div", { class: "column" }, documentsView(parts)),
        ),
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

function noHost() {
    return notice("note", element("strong", {}, text("noHost.title")), text("noHost.body"));
}
