import assert from "node:assert/strict";
import { createServer } from "node:net";
import { test } from "node:test";

import { house, Workbench } from "./workbench.mjs";

const request = JSON.stringify({ token: "t", projectId: "p", folderId: "f", fileName: "Stalled", onlyVisible: false });
const emptyPage = "data:text/html,<title>empty</title>";

test("leaving while an upload waits for a service that never answers ends at once and well", async () => {
    const sockets = [];
    const server = createServer((socket) => sockets.push(socket.on("error", () => {})));
    await new Promise((done) => server.listen(8465, "127.0.0.1", done));
    const workbench = new Workbench("--no-service", "--page", emptyPage);
    try {
        await workbench.do("open", { file: house });
        await workbench.eval(`KESTAPI.ExportIFCModel(${JSON.stringify(request)})`);
        await workbench.event((event) => event.event === "thread" && event.name === "exportModel");
        assert.deepEqual((await workbench.do("state")).threads, ["exportModel"]);
        const begin = Date.now();
        assert.equal(await workbench.quit(), 0);
        assert.ok(Date.now() - begin < 10000, "it waited for the upload");

        workbench.start();
        assert.equal(await workbench.ended, 1, "it took a stranger at the port for the service");
    } finally {
        sockets.forEach((socket) => socket.destroy());
        server.close();
        await workbench.remove();
    }
});

test("a page of the developer's own gets the object, and pages without the called functions do no harm", async () => {
    const workbench = new Workbench("--no-service", "--page", emptyPage, "--faults");
    try {
        assert.equal(await workbench.eval("document.title"), "empty");
        assert.equal(await workbench.eval("KESTAPI.RequestFileName()"), "Untitled");
        assert.equal((await workbench.ask({ do: "eval", script: "KESTAPI.Nothing()" })).ok, false);
        await workbench.do("fault", { call: "APIEnv_ProjectID", nth: 1, error: -1 });
        assert.equal(await workbench.eval("KESTAPI.RequestFileName()"), "");
        await workbench.eval(`KESTAPI.ExportIFCModel("{}")`);
        await workbench.event((event) => event.event === "page-call" && event.script === "FailExportModel()");
        assert.equal((await workbench.ask({ do: "eval", script: "throw new Error('own')" })).error, "Error: own");
        assert.equal((await workbench.ask({ do: "nothing" })).ok, false);
        assert.equal(await workbench.quit(), 0);
    } finally {
        await workbench.remove();
    }
});

test("wrong use is told from failure", async () => {
    for (const [options, status] of [
        [["--bogus"], 2],
        [["--language", "XX"], 2],
        [["one.ifc", "two.ifc"], 2],
        [["--tour", "nowhere"], 2],
        [["--help"], 0],
    ]) {
        const workbench = new Workbench("--no-service", ...options);
        assert.equal(await workbench.ended, status, options.join(" "));
        await workbench.remove();
    }
});
