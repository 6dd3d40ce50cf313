import assert from "node:assert/strict";
import test from "node:test";
import { ViewpointWork } from "../../WebApp/viewpoints.js";

const captured = '{"cameraType":1, "imageId":"5f0a","selectedGlobalIds":[]}';

function setUp(more = {}) {
    const stored = [];
    const host = {
        snapshots: [],
        shown: [],
        exportSnapshot: async (what) => host.snapshots.push(what),
        viewpoint: async () => captured,
        highlight: async (ifcGuids) => host.shown.push(ifcGuids),
        openViewpoint: async (viewpoint) => host.shown.push(viewpoint) > 0,
        ...more.host,
    };
    const service = {
        token: "t",
        session: async () => ({}),
        addViewpoint: async (...what) => ({ id: `v${stored.push(what)}` }),
        viewpointText: async () => captured,
        ...more.service,
    };
    const work = new ViewpointWork(host, service, { address: async () => "blob:", ...more.pictures });
    return { host, service, stored, work };
}

const refusal = (status) => Object.assign(new Error(`status ${status}`), { status });

test("a viewpoint is stored as the host gave it, once its snapshot is there, and only once", async () => {
    const { host, stored, work } = setUp();
    await Promise.all([work.take("p", "a"), work.take("p", "b")]);
    assert.deepEqual(host.snapshots, [{ token: "t", projectId: "p" }]);
    assert.deepEqual(work.status.get(), { state: "working", topicId: "a", step: "snapshot" });
    assert.deepEqual(stored, []);
    await Promise.all([work.insert(), work.insert()]);
    assert.deepEqual(stored, [["a", "5f0a", captured]]);
    assert.deepEqual(work.status.get(), { state: "done", topicId: "a", viewpointId: "v1", step: "stored" });
    assert.deepEqual(work.stored.get(), { projectId: "p", topicId: "a", viewpoint: { id: "v1" } });
    await work.insert();
    assert.equal(stored.length, 1);
});

test("a snapshot that is there before the host's answer ends the wait", async (t) => {
    t.mock.timers.enable({ apis: ["setTimeout"] });
    const { work } = setUp({ host: { exportSnapshot: () => work.insert() } });
    await work.take("p", "a");
    t.mock.timers.tick(60000);
    assert.equal(work.status.get().state, "done");
});

test("a snapshot that never comes frees the page, and one that comes too late is not stored", async (t) => {
    t.mock.timers.enable({ apis: ["setTimeout"] });
    const { stored, work } = setUp();
    await work.take("p", "a");
    t.mock.timers.tick(59999);
    assert.equal(work.status.get().state, "working");
    t.mock.timers.tick(1);
    assert.equal(work.status.get().state, "failed");
    assert.match(work.status.get().message, /No snapshot has arrived/);
    await work.insert();
    assert.deepEqual(stored, []);
});

test("what was cancelled is neither stored nor opened, whatever still comes", async (t) => {
    t.mock.timers.enable({ apis: ["setTimeout"] });
    const { host, stored, work } = setUp();
    await work.take("p", "a");
    work.dismiss();
    await work.insert();
    await work.take("p", "b");
    await work.insert();
    assert.deepEqual(stored.map(([topic]) => topic), ["b"]);

    work.dismiss();
    const opening = work.open("a", "v");
    work.dismiss();
    assert.equal(await opening, null);
    assert.deepEqual(host.shown, []);

    await work.take("p", "a");
    const inserting = work.insert();
    work.dismiss();
    await inserting;
    t.mock.timers.tick(60000);
    assert.equal(stored.length, 1);
    assert.equal(work.status.get().state, "idle");
});

test("nothing is stored without a snapshot on the service, and the reason is told", async () => {
    const refused = '{"cameraFactor":60,"imageId":"{"error":"The disk is full."}","creatingTool":"Archicad"}';
    const page = '{"imageId":"<html class="x">502</html>","creatingTool":"Archicad"}';
    const missing = { pictures: { address: () => Promise.reject(refusal(404)) } };
    const cases = [
        [{ host: { viewpoint: async () => refused } }, /The disk is full/],
        [{ host: { viewpoint: async () => page } }, /did not accept the snapshot, so/],
        [{ host: { viewpoint: async () => "" } }, /could not tell its 3D view/],
        [{ host: { exportSnapshot: () => Promise.reject(new Error("Null reference.")) } }, /Null reference/],
        [{ service: { session: () => Promise.reject(refusal(401)) } }, /status 401/],
        [{ service: { addViewpoint: () => Promise.reject(refusal(413)) } }, /status 413/],
        [{ pictures: { address: () => Promise.reject(refusal(0)) } }, /status 0/],
        [missing, /not on the service/],
    ];
    for (const [more, reason] of cases) {
        const { stored, work } = setUp(more);
        await work.take("p", "a");
        await work.insert();
        assert.deepEqual(stored, []);
        assert.equal(work.status.get().state, "failed");
        assert.match(work.status.get().message, reason);
        assert.equal(work.stored.get(), null);
    }
});

test("opening hands the stored object to the host and says when it cannot be read", async () => {
    const good = setUp();
    assert.deepEqual(await good.work.open("a", "v"), JSON.parse(captured));
    assert.deepEqual(good.host.shown, [[], JSON.parse(captured)]); // uncut first: it has no planes of its own
    const cut = setUp({ service: { viewpointText: async () => '{"sections":[{}]}' } });
    await cut.work.open("a", "v");
    assert.deepEqual(cut.host.shown, [{ sections: [{}] }]);
    assert.deepEqual(good.work.status.get(), { state: "done", topicId: "a", viewpointId: "v", step: "opened" });
    for (const more of [
        { host: { openViewpoint: async () => false } },
        { service: { viewpointText: async () => "no JSON" } },
    ]) {
        const { work } = setUp(more);
        assert.equal(await work.open("a", "v"), null);
        assert.match(work.status.get().message, /could not read this viewpoint/);
    }
    const { work } = setUp({ service: { viewpointText: () => Promise.reject(refusal(404)) } });
    assert.equal(await work.open("a", "v"), null);
    assert.equal(work.status.get().message, "status 404");
});
