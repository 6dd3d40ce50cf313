import assert from "node:assert/strict";
import test from "node:test";
import { Mapping } from "../../WebApp/mapping.js";

function setUp(files = [], names = [], stored = null) {
    const kept = { value: stored, get: () => kept.value, set: (value) => (kept.value = value) };
    const asked = [];
    const host = {
        openMappingFile: async () => (asked.push("file"), files.shift()),
        newPropertyName: async (used) => (asked.push(used), names.shift()),
    };
    return { kept, asked, mapping: new Mapping(host, kept) };
}

test("a chosen file is applied until the person says otherwise, also after a reload", async () => {
    const { kept, mapping } = setUp(["/a.xml", "", "/b.xml"]);
    assert.equal(mapping.applies(), false);
    await mapping.choose();
    assert.equal(mapping.applies(), true);
    mapping.apply(false);
    assert.equal(mapping.applies(), false);
    await mapping.choose();
    const { path, applied, message } = mapping.state.get();
    assert.deepEqual([path, applied], ["/a.xml", false]);
    assert.match(message, /No mapping was read/);
    await mapping.choose();
    assert.equal(mapping.applies(), true);
    assert.equal(mapping.state.get().message, "");
    const reloaded = setUp([], [], kept.value).mapping;
    assert.equal(reloaded.applies(), true);
    assert.equal(reloaded.state.get().path, "/b.xml");
});

test("names are given once, and none when the person cancels", async () => {
    const { asked, mapping } = setUp([], ["Höhe", "", "höhe "]);
    for (const _ of [1, 2, 3]) await mapping.addName();
    assert.deepEqual(asked, [[], ["Höhe"], ["Höhe"]]);
    assert.deepEqual(mapping.state.get().names, ["Höhe", "höhe "]);
});

test("a second click asks nothing while a dialog is open, and a host that throws is told", async () => {
    const { asked, mapping } = setUp(["/a.xml"]);
    await Promise.all([mapping.choose(), mapping.addName(), mapping.choose()]);
    assert.deepEqual(asked, ["file"]);
    mapping.host.openMappingFile = () => Promise.reject(new Error("Null reference."));
    await mapping.choose();
    assert.equal(mapping.state.get().message, "Null reference.");
    assert.equal(mapping.state.get().path, "/a.xml");
});
