import assert from "node:assert/strict";
import test from "node:test";
import { checkFileName } from "../../WebApp/logic/file-name.js";
import { planFormats } from "../../WebApp/logic/plan-formats.js";
import { PlanUpload } from "../../WebApp/plan-upload.js";

const request = { projectId: "p", folderId: "f", fileName: "Erdgeschoß", format: "pdf" };
const error = (status) => Object.assign(new Error(`status ${status}`), { status });

function setUp({ pending = null, answer = "", ...more } = {}) {
    const calls = [];
    const host = {
        answer,
        createPlan: async (kind) => `/tmp/plan${calls.push(kind)}`,
        planAnswer: async () => host.answer,
        exportPlan: async (what) => calls.push(what),
        ...more.host,
    };
    const service = { token: "t", session: async () => ({}), documents: async () => [], ...more.service };
    const kept = { get: () => pending, set: (value) => (pending = value) };
    const uploaded = [];
    const plan = new PlanUpload(host, service, kept, (...what) => uploaded.push(what));
    return { calls, host, service, kept, uploaded, plan };
}

test("a plan is made, then sent once, and named by its format when the service only gives an id", async (t) => {
    t.mock.timers.enable({ apis: ["setInterval"] });
    for (const { id, kind, extension } of planFormats) {
        const { calls, host, uploaded, plan } = setUp();
        await Promise.all([plan.start({ ...request, format: id }), plan.start(request)]);
        assert.deepEqual(calls, [kind, { token: "t", projectId: "p", folderId: "f", fileName: "Erdgeschoß" }]);
        assert.equal(plan.status.get().state, "running");
        host.answer = '[{"id":"d1"}]';
        await plan.complete();
        const document = { id: "d1", name: `Erdgeschoß.${extension}` };
        assert.deepEqual(plan.status.get(), { state: "done", document });
        assert.deepEqual(uploaded, [["p", document]]);
    }
    assert.deepEqual(checkFileName("a.DWG", "dwg"), { name: "a", problem: null });
    assert.deepEqual(checkFileName("a.ifc", "dwg"), { name: "a.ifc", problem: null });
});

test("failures are told with what to do, and nothing is sent without a plan", async (t) => {
    t.mock.timers.enable({ apis: ["setInterval"] });
    for (const [more, sent, reason] of [
        [{ host: { createPlan: async () => "" } }, 0, /made no plan/],
        [{ host: { createPlan: () => Promise.reject(new Error("Bad cast.")) } }, 0, /Bad cast/],
        [{ service: { session: () => Promise.reject(error(401)) } }, 0, /status 401/],
        [{ service: { documents: () => Promise.reject(error(404)) } }, 2, /status 404/],
        [{}, 2, /Choose another file name/],
    ]) {
        const { calls, kept, plan } = setUp(more);
        await plan.start(request);
        if (sent) await plan.fail(); // the host gives no reason
        assert.equal(plan.status.get().state, "failed");
        assert.match(plan.status.get().message, reason);
        assert.equal(calls.length, sent);
        assert.equal(kept.get(), null);
    }
});

test("a plan that the person stopped waiting for is not sent, also when another has begun", async (t) => {
    t.mock.timers.enable({ apis: ["setInterval"] });
    const made = [];
    const { calls, kept, plan } = setUp({
        host: { createPlan: () => new Promise((resolve, reject) => made.push({ resolve, reject })) },
    });
    const starts = [];
    for (const fileName of ["first", "second", "third"]) {
        plan.stopWaiting();
        starts.push(plan.start({ ...request, fileName }));
        await Promise.resolve(); // it has found the sign-in good
    }
    made[0].resolve("/tmp/first");
    made[1].reject(new Error("late"));
    made[2].resolve("/tmp/third");
    await Promise.all(starts);
    assert.deepEqual([calls.map(({ fileName }) => fileName), kept.get().name], [["third"], "third.pdf"]);
});

test("a connection that breaks without a word is noticed, also after a reload; a late answer still counts", async (t) => {
    t.mock.timers.enable({ apis: ["setInterval"] });
    const settled = () => new Promise((resolve) => setImmediate(resolve));
    for (const begin of [
        ({ plan }) => plan.start(request),
        ({ kept, plan }) => (kept.set({ since: 5, before: "", name: "E.pdf", ...request }), plan.resume()),
    ]) {
        const { host, service, plan, ...more } = setUp();
        await begin({ plan, ...more });
        t.mock.timers.tick(15000);
        await settled();
        assert.equal(plan.status.get().state, "running");
        for (const status of [0, null, 0, 0]) {
            assert.equal(plan.status.get().state, "running"); // until two in a row
            service.session = async () => status === null || Promise.reject(error(status));
            t.mock.timers.tick(15000);
            await settled();
        }
        assert.match(plan.status.get().message, /does not answer any more/);
        host.answer = '[{"id":"d1","name":"E.pdf"}]';
        await plan.complete();
        assert.equal(plan.status.get().state, "done");
    }
});
