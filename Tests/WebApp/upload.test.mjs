import assert from "node:assert/strict";
import test from "node:test";
import { Upload } from "../../WebApp/upload.js";

const request = { projectId: "p", folderId: "f", fileName: "Tower", onlyVisible: true };
const expired = Object.assign(new Error("expired"), { status: 401 });

function setUp({ pending = null, answer = "" } = {}) {
    const host = {
        answer,
        exports: [],
        uploadAnswer: async () => host.answer,
        exportModel: async (what) => host.exports.push(what),
    };
    const service = { token: "t", session: async () => ({ user: "demo" }), documents: async () => [] };
    const kept = { get: () => pending, set: (value) => (pending = value) };
    return { host, service, kept, upload: new Upload(host, service, kept) };
}

test("pressing twice exports once", async () => {
    const { host, upload } = setUp();
    await Promise.all([upload.start(request), upload.start(request)]);
    assert.deepEqual(host.exports, [{ token: "t", ...request }]);
    assert.equal(upload.status.get().state, "running");
});

test("an expired sign-in is found before the export", async () => {
    const { host, service, upload } = setUp();
    service.session = () => Promise.reject(expired);
    await upload.start(request);
    assert.equal(host.exports.length, 0);
    assert.equal(upload.status.get().state, "failed");
});

test("a stored document ends the upload, named from the folder's list when the answer has only an id", async () => {
    const { host, service, upload } = setUp();
    service.documents = async (folder) => [
        { id: "d1", name: "other" },
        { id: "d2", name: "Tower.ifc", folder },
    ];
    await upload.start(request);
    host.answer = '[{"id":"d2"}]';
    await upload.complete();
    const document = { id: "d2", name: "Tower.ifc", folder: "f" };
    assert.deepEqual(upload.status.get(), { state: "done", document });
});

test("refusals and broken answers fail with a reason", async () => {
    for (const [answer, session, reason] of [
        ['{"error":"Folder locked"}', null, /Folder locked/],
        ["", null, /no readable answer/],
        ['{"error":"Who?"}', expired, /sign-in had expired/],
        ['{"error":"x"}', Object.assign(new Error("does not answer"), { status: 0 }), /does not answer/],
    ]) {
        const { host, service, upload } = setUp();
        await upload.start(request);
        if (session) service.session = () => Promise.reject(session);
        host.answer = answer;
        await upload.complete();
        assert.equal(upload.status.get().state, "failed");
        assert.match(upload.status.get().message, reason);
    }
});

test("a host that throws frees the page again", async () => {
    const { host, kept, upload } = setUp();
    host.exportModel = () => Promise.reject(new Error("Null reference."));
    await upload.start(request);
    assert.deepEqual(upload.status.get(), { state: "failed", message: "Null reference." });
    assert.equal(kept.get(), null);
});

test("a reload keeps the upload, whether it ends later or has ended meanwhile", async () => {
    const pending = { since: 5, fileName: "Tower", folderId: "f", before: "old" };
    const later = setUp({ pending, answer: "old" });
    await later.upload.resume();
    assert.deepEqual(later.upload.status.get(), { state: "running", since: 5, fileName: "Tower" });
    later.host.answer = '[{"id":"d","name":"Tower.ifc"}]';
    await later.upload.complete();
    assert.equal(later.upload.status.get().state, "done");

    const meanwhile = setUp({ pending, answer: '[{"id":"d","name":"Tower.ifc"}]' });
    await meanwhile.upload.resume();
    assert.equal(meanwhile.upload.status.get().state, "done");
    assert.equal(meanwhile.kept.get(), null);
});
