import assert from "node:assert/strict";
import test from "node:test";
import { ExportHistory } from "../../WebApp/export-history.js";
import { asciiJson } from "../../WebApp/logic/ascii-json.js";
import { itemsFor, nameProblems, newItem, readSelection, withValues } from "../../WebApp/logic/publish-items.js";
import { foldersOf, leavesOf, tickStates, withTick } from "../../WebApp/logic/publish-tree.js";
import { PublishChoice } from "../../WebApp/publish-choice.js";
import { Publishing } from "../../WebApp/publishing.js";

const leaf = (key) => ({ title: `Plan ${key}`, key, isLeaf: true });
const tree = [
    { title: "Sheets", key: "F", children: [leaf("a"), { title: "Süd", key: "G", children: [leaf("b"), leaf("c")] }] },
    leaf("d"),
];
const expired = Object.assign(new Error("expired"), { status: 401 });

test("a folder's box stands for its items, and theirs for it", () => {
    const cases = [
        [[], { F: "off", a: "off", G: "off", b: "off", c: "off", d: "off" }],
        [["b"], { F: "some", a: "off", G: "some", b: "on", c: "off", d: "off" }],
        [["b", "c"], { F: "some", a: "off", G: "on", b: "on", c: "on", d: "off" }],
        [["a", "b", "c"], { F: "on", a: "on", G: "on", b: "on", c: "on", d: "off" }],
    ];
    for (const [ticked, states] of cases) {
        assert.deepEqual(Object.fromEntries(tickStates(tree, new Set(ticked))), states);
    }
    const all = withTick(new Set(["b", "d"]), tree[0], true);
    assert.deepEqual(all, new Set(["b", "d", "a", "c"]));
    assert.deepEqual(withTick(all, tree[0].children[1], false), new Set(["d", "a"]));
    assert.deepEqual(leavesOf(tree).map(({ key }) => key), ["a", "b", "c", "d"]);
    assert.deepEqual(foldersOf(tree).get("c"), ["Sheets", "Süd"]);
});

test("names that are wrong or would be dropped are found", () => {
    const item = (key, docName, ext = "") => ({ ...newItem(leaf(key), ""), docName, ext });
    const cases = [
        [[item("a", " "), item("b", "x/y"), item("c", "ok")], { a: "empty", b: "character" }],
        [[item("a", "Plan"), item("b", " plan ")], { b: "maybeSame" }],
        [[item("a", "Plan", "pdf"), item("b", "Plan", "dwg"), item("c", "PLAN", "PDF")], { c: "same" }],
        [[item("a", "Pla\u0308n", "pdf"), item("b", "Plän")], { b: "maybeSame" }],
    ];
    for (const [items, problems] of cases) assert.deepEqual(Object.fromEntries(nameProblems(items)), problems);
    assert.equal(newItem({ key: "k", title: "A/B: 1.OG" }, "").docName, "A-B- 1.OG");
});

test("a run takes what is not uploaded yet, and values typed once are suggested", () => {
    const items = [["a", "done", "pdf"], ["b", "prepared", "pdf"], ["c", "failed", ""]].map(([key, state, ext]) => ({ key, state, ext }));
    const keys = (what, of = items) => itemsFor(what, of).map(({ key }) => key).join("");
    assert.deepEqual(["prepare", "publish", "upload"].map((what) => keys(what)), ["abc", "bc", "b"]);
    assert.equal(keys("upload", items.slice(0, 1)), "a");
    const typed = { discipline: " ARC ", building: "", floor: "EG" };
    const kept = { discipline: ["HVAC", "ARC"], floor: Array.from({ length: 20 }, (_, n) => `${n}`) };
    const values = withValues(kept, [typed, typed]);
    assert.deepEqual([values.discipline, values.building, values.floor.length, values.floor[0]], [["ARC", "HVAC"], [], 12, "EG"]);
});

/** A host that prepares all but the `broken`, and uploads all but the `lost` when finish() is called. */
function fakeHost() {
    const host = {
        sets: '[{"title":"Plans","guid":"S","rootGuid":"R","index":0}]',
        held: { projectId: "", publishSet: "", publishItems: "[]" },
        saved: null,
        broken: [],
        lost: [],
        calls: [],
        documents: {},
        publishSets: async () => host.sets,
        publishTree: async () => JSON.stringify(tree),
        async preparePublish({ projectId, guid, publishItems }) {
            host.calls.push(`prepare ${publishItems.map(({ key }) => key).join("")}`);
            const good = publishItems.filter(({ key }) => !host.broken.includes(key));
            const text = JSON.stringify(good.map((item) => ({ ...item, filePath: `/tmp/${item.key}.pdf`, ext: "pdf" })));
            host.held = { projectId, publishSet: guid, publishItems: text };
            return text;
        },
        async uploadPublish(order) {
            host.order = order;
            host.calls.push(`upload ${order.publishItems.map(({ key }) => key).join("")}`);
            host.documents = {};
        },
        finish() {
            for (const { key } of host.order.publishItems) {
                if (!host.lost.includes(key)) host.documents[key] = `${key}-${host.calls.length}`;
            }
        },
        publishedDocuments: async () => JSON.stringify(host.documents),
        loadPublishSelection: async (projectId) => {
            if (host.held.projectId !== projectId && host.saved) host.held = host.saved;
        },
        publishSelection: async (projectId) => (host.held.projectId === projectId ? JSON.stringify(host.held) : "[]"),
        rememberPublishSelection: async (selection) => (host.held = selection),
        savePublishSelection: async () => (host.saved = host.held),
        canPublish: () => true,
        histories: {},
        exportHistory: async (projectId, model) => host.histories[projectId + model] ?? "",
        saveExportHistory: async (projectId, model, text) => (host.histories[projectId + model] = text),
    };
    return host;
}

async function setUp({ host = fakeHost(), pending = null, ticked = [tree[0]] } = {}) {
    const service = { token: "t", session: async () => ({}) };
    const choice = new PublishChoice(host, 0);
    const history = new ExportHistory(host);
    const kept = { get: () => pending, set: (value) => (pending = structuredClone(value)) };
    const publishing = new Publishing(host, service, choice, history, kept, 1);
    if (!pending) await choice.load("p");
    for (const node of ticked) choice.tick(node, true);
    const order = () => ({ projectId: "p", set: choice.state.get().set, items: choice.state.get().items, folderId: "f" });
    return {
        host,
        service,
        choice,
        history,
        kept,
        publishing,
        start: (what) => publishing.start(what, order()),
        items: () => [...choice.state.get().items.values()].map(({ key, state }) => `${key} ${state}`).join(", "),
        state: () => publishing.status.get().state,
        message: () => publishing.status.get().message ?? "",
    };
}

test("what is ticked is prepared, then uploaded, once, and each item gets its document", async () => {
    const { host, choice, kept, publishing, start, items, state } = await setUp();
    choice.edit(["b"], { docName: "Grundriß", folder: "g", floor: "EG" });
    await start("prepare");
    assert.deepEqual([publishing.status.get(), items()], [{ state: "done", prepared: 3 }, "a prepared, b prepared, c prepared"]);
    assert.match(host.saved.publishItems, /^[\x20-\x7e]*Grundri\\u00df[\x20-\x7e]*$/);
    choice.edit(["b"], { floor: "OG" });
    await Promise.all([start("upload"), start("upload"), start("publish")]);
    assert.match(host.saved.publishItems, /"floor":"OG"/);
    assert.equal(state(), "uploading");
    assert.deepEqual(host.calls, ["prepare abc", "upload abc"]);
    const [a, b] = host.order.publishItems;
    assert.deepEqual(a, { key: "a", docName: "Plan a", ext: "pdf", filePath: "/tmp/a.pdf", folder: "f" });
    assert.deepEqual([b.docName, b.folder, host.order.token], ["Grundriß", "g", "t"]);
    host.finish();
    await Promise.all([publishing.complete(), publishing.complete()]);
    assert.deepEqual(publishing.status.get(), { state: "done", uploaded: 3 });
    assert.equal(choice.state.get().items.get("b").documentId, "b-2");
    assert.equal(kept.get(), null);
    const [entry] = JSON.parse(host.histories.pfalse);
    assert.deepEqual([entry.kind, entry.name, entry.document], ["document", "Plan a", "Plan a.pdf"]);
});

test("what could not be prepared or uploaded is marked, and only that is tried again", async () => {
    const { host, choice, publishing, start, items, state } = await setUp();
    host.broken = ["a"];
    host.lost = ["c"];
    await start("publish");
    host.finish();
    await publishing.complete();
    assert.deepEqual([state(), items()], ["failed", "a failed, b done, c failed"]);
    assert.match(choice.state.get().items.get("a").message, /could not publish this item/);
    assert.match(choice.state.get().items.get("c").message, /Not uploaded/);
    host.broken = host.lost = [];
    await start("publish");
    host.finish();
    await publishing.complete();
    assert.deepEqual(host.calls.slice(2), ["prepare ac", "upload ac"]);
    assert.equal(items(), "a done, b done, c done");
});

test("a run that fails as a whole says why and frees the page", async () => {
    const broken = () => Promise.reject(new Error("Null reference."));
    const cases = [
        [{ preparePublish: broken }, {}, "Null reference.", 0],
        [{ preparePublish: async () => "" }, {}, /prepared nothing/, 0],
        [{ broken: ["a", "b", "c"] }, {}, /None of the items/, 1],
        [{ uploadPublish: broken }, {}, "Null reference.", 1],
        [{}, { session: () => Promise.reject(expired) }, "expired", 0],
        [{}, {}, /same name/, 1, (choice) => choice.edit(["a", "c"], { docName: "Plan" })],
        [{}, {}, /sign-in had expired/, 1, (_, service) => {
            service.session = async () => (service.token = "of another person");
        }],
        [{}, {}, /did not find the prepared files/, 2, null, (publishing) => publishing.fail()],
        [{}, {}, /without a document: 3/, 2, null, (publishing, service) => {
            service.session = () => Promise.reject(expired);
            return publishing.complete();
        }, /sign-in had expired/],
    ];
    for (const [more, services, reason, calls, before, after, itemReason] of cases) {
        const { host, service, choice, kept, publishing, start, state, message } = await setUp();
        Object.assign(host, more);
        Object.assign(service, services);
        before?.(choice, service);
        await start("publish");
        await after?.(publishing, service);
        assert.equal(state(), "failed");
        assert.match(message(), new RegExp(reason));
        assert.equal(host.calls.length, calls);
        assert.equal(kept.get(), null);
        assert.ok(![...choice.state.get().items.values()].some(({ state }) => state === "uploading"));
        if (itemReason) assert.match(choice.state.get().items.get("a").message, itemReason);
    }
});

test("a run that was given up may end after all, or be followed by another", async () => {
    const { host, publishing, start, items, state } = await setUp();
    await start("publish");
    await publishing.stopWaiting();
    assert.deepEqual([state(), items()], ["failed", "a failed, b failed, c failed"]);
    host.documents = { a: "late" };
    host.lost = ["a"];
    await start("upload");
    host.finish();
    await publishing.complete();
    assert.deepEqual([state(), items()], ["failed", "a failed, b done, c done"]);

    const late = await setUp();
    await late.start("publish");
    const { publishedDocuments } = late.host;
    late.host.publishedDocuments = () => new Promise(() => {});
    await late.publishing.stopWaiting();
    late.host.publishedDocuments = publishedDocuments;
    assert.equal(late.state(), "failed");
    late.host.finish();
    await late.publishing.complete();
    assert.deepEqual([late.state(), late.items()], ["done", "a done, b done, c done"]);
    for (const silent of ["rememberPublishSelection", "preparePublish", "publishedDocuments"]) {
        const stuck = await setUp();
        let answer = null;
        stuck.host[silent] = () => new Promise((resolve) => (answer = resolve));
        stuck.start("publish");
        for (let tries = 0; tries < 100 && !answer; ++tries) await new Promise((done) => setTimeout(done, 1));
        await stuck.publishing.stopWaiting();
        answer("[]");
        await new Promise((done) => setTimeout(done, 5));
        assert.deepEqual([stuck.state(), stuck.kept.get(), stuck.host.order], ["failed", null, undefined], silent);
    }
});

test("a page loaded anew takes up the run, wherever it was", async () => {
    const { host, kept, start } = await setUp();
    await start("publish");
    const during = await setUp({ host, pending: structuredClone(kept.get()), ticked: [] });
    await during.publishing.resume();
    await during.choice.load("p");
    assert.deepEqual([during.state(), during.items()], ["uploading", "a uploading, b uploading, c uploading"]);
    host.finish();
    await during.publishing.complete();
    assert.deepEqual([during.state(), during.items()], ["done", "a done, b done, c done"]);
    const after = await setUp({ host, pending: structuredClone(kept.get()), ticked: [] });
    await after.publishing.resume();
    assert.equal(after.state(), "done");

    const other = await setUp();
    const prepare = other.host.preparePublish;
    other.host.preparePublish = () => new Promise(() => {});
    other.start("publish");
    await new Promise((done) => setTimeout(done, 5));
    const { host: busy } = other;
    const preparing = await setUp({ host: busy, pending: structuredClone(other.kept.get()), ticked: [] });
    const resumed = preparing.publishing.resume();
    await preparing.choice.load("p");
    await new Promise((done) => setTimeout(done, 5));
    assert.equal(preparing.state(), "preparing");
    await prepare({ projectId: "p", guid: "S", publishItems: [...preparing.choice.state.get().items.values()] });
    await resumed;
    assert.deepEqual([preparing.state(), busy.calls], ["uploading", ["prepare abc", "upload abc"]]);
});

test("the selection of yesterday is found again, and prepared anew where the host lost the folders", async () => {
    const { host, choice, start } = await setUp();
    choice.edit(["a"], { docName: "Lageplan Süd", building: "Haus ♥" });
    await start("prepare");
    const files = JSON.parse(host.saved.publishItems).filter(({ key }) => key !== "b");
    const publishItems = JSON.stringify(files.map((item) => ({ ...item, filePath: `${item.key}.pdf` })));
    host.saved = { ...host.saved, publishItems };
    host.held = { projectId: "other" };

    const next = await setUp({ host, ticked: [] });
    assert.equal(next.items(), "a prepared, c prepared");
    const { docName, building } = next.choice.state.get().items.get("a");
    assert.deepEqual([docName, building], ["Lageplan Süd", "Haus ♥"]);
    await next.start("upload");
    assert.deepEqual(host.calls.slice(1), ["prepare ac", "upload ac"]);
    assert.equal(host.order.publishItems[0].filePath, "/tmp/a.pdf");

    for (const text of ["", "[]", "{}", '{"publishItems":"{"}', "null"]) assert.equal(readSelection(text), null);
    host.sets = "";
    await next.choice.load("p");
    assert.deepEqual([next.choice.state.get().phase, next.choice.state.get().items.size], ["failed", 2]);
});

test("histories are short ASCII texts, newest first, models and the rest together", async () => {
    const host = fakeHost();
    const history = new ExportHistory(host);
    const entry = (time, name) => ({ time: `2026-11-${time}T10:00:00.000Z`, kind: "document", name, document: "d" });
    host.histories.pfalse = "no JSON";
    await history.load("p");
    await history.add("p", false, [entry("02", "Grüße 🏠")]);
    await Promise.all([history.add("p", true, [entry("03", "M")]), history.add("p", false, [entry("04", "x")])]);
    assert.deepEqual(history.entries.get().map(({ name }) => name), ["x", "M", "Grüße 🏠"]);
    await history.add("p", false, Array(205).fill(entry("05", "ß")));
    assert.equal(JSON.parse(host.histories.pfalse).length, 200);
    assert.match(host.histories.pfalse, /^[\x20-\x7e]*$/);
    const value = { text: "ü\u2028\u007f🏠\ud800\"\\\n" };
    assert.match(asciiJson(value), /^[\x20-\x7e]*$/);
    assert.deepEqual(JSON.parse(asciiJson(value)), value);
});
