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

test("what prevents a plan is told, and nothing is sent", async () => {
    for (const [more, reason] of [
        [{ host: { createPlan: async () => "" } }, /made no plan/],
        [{ host: { createPlan: () => Promise.reject(new Error("Bad cast.")) } }, /Bad cast/],
        [{ service: { session: () => Promise.reject(error(401)) } }, /status 401/],
    ]) {
        const { calls, kept, plan } = setUp(more);
        await plan.start(request);
        assert.equal(plan.status.get().state, "failed");
        assert.match(plan.status.get().message, reason);
        assert.equal(calls.some((call) => call.token), false);
        assert.equal(kept.get(), null);
    }
});

test("a refusal without a reason is explained as far as the service can", async (t) => {
    t.mock.timers.enable({ apis: ["setInterval"] });
    for (const [asked, status, reason] of [
        ["documents", 404, /status 404/],
        ["session", 401, /sign-in had expired/],
        ["session", 0, /status 0/],
        ["none", 0, /Choose another file name/],
    ]) {
        const { service, plan } = setUp();
        await plan.start(request);
        service[asked] = () => Promise.reject(error(status));
        await plan.fail();
        assert.match(plan.status.get().message, reason);
    }
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
        service.session = () => Promise.reject(error(0));
        t.mock.timers.tick(15000);
        await settled();
        assert.match(plan.status.get().message, /does not answer any more/);
        host.answer = '[{"id":"d1","name":"E.pdf"}]';
        await plan.complete();
        assert.equal(plan.status.get().state, "done");
    }
});
