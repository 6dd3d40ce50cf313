import { element, mark, notice } from "../dom.js";
import { isLoopback } from "../logic/host-info.js";
import { text } from "../text.js";

/** The sign-in screen. `message` says why it is shown, if there is a reason; `onSignedIn` gets the session. */
export function signInView({ service, message, lastUser, onSignedIn }) {
    const said = element("div", { class: "said", role: "alert" });
    const user = element("input", {
        id: "user",
        name: "user",
        autocomplete: "username",
        autocapitalize: "none",
        spellcheck: "false",
        value: lastUser,
    });
    const password = element("input", {
        id: "password",
        name: "password",
        type: "password",
        autocomplete: "current-password",
    });
    const submit = element("button", { class: "primary wide" }, text("signIn.submit"));

    const say = (problem) => said.replaceChildren(notice("failed", problem));

    async function signIn(event) {
        event.preventDefault();
        if (submit.disabled) return;
        if (!user.value.trim() || !password.value) {
            say(text("signIn.incomplete"));
            (user.value.trim() ? password : user).focus();
            return;
        }
        said.replaceChildren();
        submit.disabled = true;
        submit.textContent = text("signIn.busy");
        try {
            onSignedIn(await service.signIn(user.value.trim(), password.value));
        } catch (error) {
            say(error.message);
            password.select();
        } finally {
            submit.disabled = false;
            submit.textContent = text("signIn.submit");
        }
    }

    if (message) said.append(notice("note", message));
    const view = element(
        "main",
        { class: "gate" },
        mark(56),
        element("h1", {}, "Kestrane"),
        element("p", { class: "quiet" }, text("app.tagline")),
        element(
            "form",
            {
                id: "sign-in",
                class: "card",
                novalidate: true,
                "aria-label": text("signIn.heading"),
                onsubmit: signIn,
            },
            said,
            element("label", { for: "user" }, text("signIn.user")),
            user,
            element("label", { for: "password" }, text("signIn.password")),
            password,
            submit,
        ),
        isLoopback(service.base) ? element("p", { class: "hint" }, text("signIn.hint")) : null,
    );
    return { view, ready: () => (lastUser ? password : user).focus() };
}
