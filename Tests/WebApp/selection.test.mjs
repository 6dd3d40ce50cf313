import assert from "node:assert/strict";
import test from "node:test";
import { Selection } from "../../WebApp/selection.js";

const guids = (selection) => selection.state.get().elements.map(({ ifcGuid }) => ifcGuid);

// A host whose selection changes call the page, as the real one does.
function setUp(...selected) {
    const host = {
        selected,
        asked: 0,
        watched: false,
        watchSelection: async (watched) => (host.watched = watched),
        selectedElements: async () => {
            host.asked += 1;
            return host.selected.map((ifcGuid) => JSON.stringify({ ifcGuid, name: `Name ${ifcGuid}` }));
        },
        select(...chosen) {
            host.selected = chosen;
            return host.watched ? selection.update() : null;
        },
        // One call for taking the old selection away, one for the new one.
        highlight: async (chosen) => {
            host.selected = chosen;
            await Promise.all([selection.update(), selection.update()]);
        },
        zoomTo: async (ifcGuid) => ifcGuid !== "elsewhere",
    };
    const selection = new Selection(host);
    return { host, selection };
}

test("the selection is known while it is followed, and only then", async () => {
    const { host, selection } = setUp("a", "b");
    await selection.update();
    assert.equal(host.asked, 0);
    await selection.follow(true);
    assert.deepEqual(selection.state.get().elements[1], { ifcGuid: "b", name: "Name b" });
    await host.select("c");
    assert.deepEqual(guids(selection), ["c"]);
    await selection.follow(false);
    await host.select("d");
    await selection.update();
    assert.deepEqual([host.watched, guids(selection)], [false, ["c"]]);
});

test("many changes in a row lead to few questions, the last of them after the last change", async () => {
    const { host, selection } = setUp();
    await selection.follow(true);
    host.asked = 0;
    let last;
    const changes = [];
    for (let i = 0; i < 100; ++i) changes.push(host.select((last = `e${i}`)));
    await Promise.all(changes);
    assert.deepEqual(guids(selection), [last]);
    assert.ok(host.asked <= 2, `${host.asked} questions`);
});

test("showing elements one by one keeps the list until the person selects something else", async () => {
    const { host, selection } = setUp("a", "b", "c");
    await selection.follow(true);
    const { elements } = selection.state.get();
    for (const ifcGuid of ["b", "c"]) {
        assert.equal(await selection.show(ifcGuid), true);
        assert.deepEqual(host.selected, [ifcGuid]);
        assert.deepEqual(selection.state.get(), { elements, shown: ifcGuid });
    }
    await selection.selectAll();
    assert.deepEqual(host.selected, ["a", "b", "c"]);
    assert.deepEqual(selection.state.get(), { elements, shown: null });

    await selection.show("b");
    await host.select("a");
    assert.deepEqual(guids(selection), ["a"]);
    await host.select();
    assert.deepEqual(guids(selection), []);
});

test("an element that is not in the list becomes the list, and one that is nowhere is told", async () => {
    const { host, selection } = setUp("a", "b");
    await selection.follow(true);
    assert.equal(await selection.show("x"), true);
    assert.deepEqual(guids(selection), ["x"]);
    assert.equal(await selection.show("elsewhere"), false);
    host.highlight = () => Promise.reject(new Error("Null reference."));
    assert.equal(await selection.show("a"), false);
});
