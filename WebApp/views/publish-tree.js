import { element, icon } from "../dom.js";
import { leavesOf, tickStates } from "../logic/publish-tree.js";
import { text } from "../text.js";

const openedWhole = 80; // larger trees are opened step by step, and built so

/**
 * A publisher set's tree with tick boxes. Arrow keys move through it, right and left open and close folders.
 * ticked(node, on) is told of each box. show(tree, items, enabled) brings it up to date.
 */
export function publishTree(ticked) {
    let shown = null;
    let nodes = new Map(); // of the built ones, by the boxes
    let isEnabled = true;
    let states = new Map();

    const view = element("ul", {
        id: "publish-tree",
        class: "tree",
        "aria-labelledby": "publish-heading",
        onkeydown: move,
        onfocusin: ({ target }) => nodes.has(target) && makeCurrent(target),
    });

    function show(tree, items, enabled) {
        isEnabled = enabled;
        states = tickStates(tree, items);
        if (tree !== shown) {
            shown = tree;
            nodes = new Map();
            const whole = leavesOf(tree).length <= openedWhole;
            view.replaceChildren(...tree.map((node) => branch(node, whole)));
            makeCurrent(view.querySelector("input"));
        }
        for (const box of nodes.keys()) mark(box);
    }

    function mark(box) {
        const state = states.get(nodes.get(box).key);
        box.checked = state === "on";
        box.indeterminate = state === "some";
        box.disabled = !isEnabled;
    }

    function branch(node, opened) {
        const box = element("input", {
            type: "checkbox",
            tabindex: -1,
            onchange: () => ticked(node, box.checked),
        });
        nodes.set(box, node);
        const label = element("label", {}, box, element("span", {}, node.title));
        if (!node.children) return element("li", { "data-tree-key": node.key }, element("div", {}, label));

        const list = element("ul", { hidden: true });
        const toggle = element(
            "button",
            {
                type: "button",
                class: "toggle",
                tabindex: -1,
                "aria-label": text("publish.folder", { title: node.title }),
                onclick: () => open(list.hidden),
            },
            icon("back"),
        );
        function open(wanted) {
            if (wanted && !list.hasChildNodes()) {
                list.append(...node.children.map((child) => branch(child, opened)));
                for (const made of list.querySelectorAll("input")) mark(made);
            }
            list.hidden = !wanted;
            toggle.setAttribute("aria-expanded", String(wanted));
        }
        open(opened);
        return element("li", { "data-tree-key": node.key }, element("div", {}, toggle, label), list);
    }

    // One box of the tree is reached with the Tab key, as in any tree.
    function makeCurrent(box) {
        view.querySelector('input[tabindex="0"]')?.setAttribute("tabindex", "-1");
        box?.setAttribute("tabindex", "0");
    }

    function move(event) {
        const to = destination(event);
        if (!to) return;
        event.preventDefault();
        to.focus();
    }

    function destination({ key, target }) {
        const item = target.closest("li");
        const list = item.querySelector("ul");
        const toggle = item.querySelector(":scope > div > .toggle");
        const visible = [...view.querySelectorAll("input")].filter((box) => box.offsetParent !== null);
        const at = visible.indexOf(item.querySelector("input"));
        switch (key) {
            case "ArrowDown":
                return visible[at + 1];
            case "ArrowUp":
                return visible[at - 1];
            case "Home":
                return visible[0];
            case "End":
                return visible.at(-1);
            case "ArrowRight":
                if (!list) return null;
                if (!list.hidden) return visible[at + 1];
                toggle.click();
                return visible[at];
            case "ArrowLeft":
                if (!list || list.hidden) return item.parentElement.closest("li")?.querySelector("input");
                toggle.click();
                return visible[at];
            default:
                return null;
        }
    }

    return { view, show };
}
