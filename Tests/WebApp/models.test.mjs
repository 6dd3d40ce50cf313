import assert from "node:assert/strict";
import test from "node:test";
import { localName } from "../../WebApp/logic/models.js";
import { ModelWork } from "../../WebApp/models.js";

test("local names are harmless, short enough and tell versions apart", () => {
    const id = "0123456789abcdef";
    const cases = [
        ["Tower", "Tower"],
        ["Haus Süd_2-b", "Haus Süd_2-b"],
        ["Ha\u0308user", "Häuser"],
        ["../..\\C:|塔 १२", "______C__塔 १२"],
        ["...hidden.v1", "___hidden_v1"],
        [" \t\n\u0000\u202e🏠\ud800 ", "____"],
        ["", ""],
        ["x".repeat(90), "x".repeat(80)],
        ["塔".repeat(90), "塔".repeat(66)],
    ];
    for (const [name, local] of cases) assert.equal(localName(name, id), `${local}-01234567`, JSON.stringify(name));
    assert.equal(localName("a", "../../x.y/z"), "a-______x_");
});

const chosen = [
    { model: { name: "MEP", extension: "ifczip" }, version: { id: "11111111aaaa", version: 3 } },
    { model: { name: "A/B", extension: "ifc" }, version: { id: "22222222bbbb", version: 1 } },
];
const infos = [
    { id: "11111111aaaa", name: "MEP-11111111", version: 3, extension: "ifczip" },
    { id: "22222222bbbb", name: "A_B-22222222", version: 1, extension: "ifc" },
];
const last = "A_B-22222222-V1";
const expired = Object.assign(new Error("expired"), { status: 401 });

function setUp(more = {}, pending = null) {
    const calls = [];
    const host = {
        name: "before",
        opens: last,
        projectName: async () => host.name,
        resourceFolder: async () => "/resources",
        importModels: async (request) => calls.push(request),
        openModels: async () => {
            calls.push("open");
            host.name = host.opens;
        },
        ...more,
    };
    const service = { token: "t", session: async () => ({}) };
    const kept = { get: () => pending, set: (value) => (pending = value) };
    const work = new ModelWork(host, service, kept, () => host.projectName(), 1);
    const state = () => work.status.get().state;
    return { host, service, calls, kept, work, state };
}

test("a run downloads, opens and ends once, whatever is pressed or called twice", async () => {
    const { calls, kept, work, state } = setUp();
    await work.complete();
    assert.equal(state(), "idle");
    await Promise.all([work.start(chosen), work.start(chosen)]);
    assert.deepEqual(calls, [{ token: "t", modelInfos: infos }]);
    assert.equal(state(), "downloading");
    const ends = [work.complete(), work.complete(), work.start(chosen)];
    assert.equal(state(), "opening");
    await Promise.all(ends);
    assert.deepEqual(calls.slice(1), ["open"]);
    assert.deepEqual(work.status.get(), { state: "done", names: ["MEP", "A/B"] });
    assert.equal(kept.get(), null);
});

test("what goes wrong is told, and the page can be used again", async () => {
    const broken = () => Promise.reject(new Error("Null reference."));
    const cases = [
        [{ resourceFolder: async () => "" }, null, /no folder/, []],
        [{ importModels: broken }, null, /Null reference/, []],
        [{ openModels: broken }, null, /Null reference/, ["import"]],
        [{ opens: "MEP-11111111-V3" }, null, /“A\/B” could not be opened.*“A_B-22222222-V1\.ifc” from \/resources/, ["import", "open"]],
        [{}, [expired], /expired/, []],
        [{}, [null, expired], /ended during the download.*\/resources/, ["import"]],
        [{}, [null, Object.assign(new Error("does not answer"), { status: 0 })], /does not answer/, ["import"]],
    ];
    for (const [more, sessions, reason, expected] of cases) {
        const { service, calls, kept, work, state } = setUp(more);
        if (sessions) {
            service.session = async () => {
                const error = sessions.shift();
                if (error) throw error;
            };
        }
        await work.start(chosen);
        await work.complete();
        assert.equal(state(), "failed");
        assert.match(work.status.get().message, reason);
        assert.deepEqual(calls.map((call) => (call === "open" ? call : "import")), expected);
        assert.equal(kept.get(), null);
        work.forget();
        assert.equal(state(), "idle");
    }
});

test("downloads that were given up do not open the next run's models too early", async () => {
    const { calls, work, state } = setUp();
    await work.start(chosen);
    work.stopWaiting();
    assert.equal(state(), "failed");
    await work.start(chosen);
    await work.complete();
    assert.equal(state(), "downloading");
    await work.complete();
    assert.equal(calls.at(-1), "open");
    assert.equal(state(), "done");
});

test("a page loaded anew takes up the run while it downloads and while it opens", async () => {
    const before = setUp();
    await before.work.start(chosen);
    const during = setUp({}, before.kept.get());
    during.work.resume();
    assert.equal(during.state(), "downloading");
    await during.work.complete();
    assert.deepEqual([during.calls, during.state()], [["open"], "done"]);

    const after = setUp({}, { ...before.kept.get(), state: "opening" });
    const resumed = after.work.resume();
    await after.work.complete();
    await new Promise((done) => setTimeout(done, 5));
    assert.equal(after.state(), "opening");
    after.host.name = last;
    await resumed;
    assert.deepEqual([after.calls, after.state()], [[], "done"]);
});
