import assert from "node:assert/strict";
import { readFileSync, statSync } from "node:fs";
import { join } from "node:path";
import { after, before, test } from "node:test";

import { house, Workbench } from "./workbench.mjs";

let workbench;

before(async () => {
    workbench = new Workbench();
    await workbench.do("open", { file: house });
});

after(() => workbench.remove());

test("the page sees the functions in their order as soon as its scripts run, also after a reload", async () => {
    const functions = "Object.keys(KESTAPI)";
    const expected = [
        "GetResourceFolder",
        "HighlightElements",
        "ZoomToElement",
        "GetElementNames",
        "AlertAPI",
        "SelectViewpoint",
        "GetSelectedElements",
        "AddComponent",
        "AddViewpoint",
        "ImportIfcModel",
        "RegisterIfcFileName",
        "RequestFileName",
        "GetIfcFile",
        "GetApplicationInfo",
        "ImportIfcFiles",
        "OpenIfcModels",
        "ExportIFCModel",
        "GetIfcDocuments",
        "Create2dPlan",
        "Export2dPlan",
        "ExportSnapshot",
        "GetExportHistory",
        "SaveExportHistoryData",
        "GetPlanDocuments",
        "OpenMappingFile",
        "SetNewPropertyName",
        "GetPublishSetHeaders",
        "GetPublishSetItems",
        "HandlePublishSets",
        "CompleteExportPublish",
        "PreparePublishDocs",
        "GetPublishHistory",
        "SavePublishHistory",
        "SetPublishHistory",
        "GetPublishItems",
    ];
    assert.deepEqual(await workbench.eval(functions), expected);
    await workbench.ask({ do: "eval", script: "window.isFormer = true; location.reload()" });
    await workbench.until("!window.isFormer && document.readyState === 'complete'");
    assert.deepEqual(await workbench.eval(functions), expected);
});

test("script values cross as they are, and what is thrown rejects the promise while the host goes on", async () => {
    const outcome = (call) => workbench.eval(`${call}.then(value => [value], error => error.message)`);
    assert.deepEqual(await outcome("KESTAPI.AddComponent(true)"), [true]);
    assert.deepEqual(await outcome("KESTAPI.GetIfcFile()"), [""]);
    assert.deepEqual(await outcome("KESTAPI.GetIfcFile(5)"), [""]);
    assert.equal(await outcome("KESTAPI.GetIfcFile({})"), "Bad cast.");
    assert.equal(await outcome("KESTAPI.RegisterIfcFileName(['a'])"), "Bad cast.");
    assert.deepEqual(await outcome("KESTAPI.RequestFileName()"), ["AC14-FZK-Haus"]);
});

test("an alert that the page asks for is shown with its text", async () => {
    assert.equal(await workbench.eval("KESTAPI.AlertAPI('Größe: \"5\" \\\\ 6')"), true);
    const alert = await workbench.event((event) => event.event === "alert");
    assert.deepEqual([alert.large, alert.small, alert.buttons], ['Größe: "5" \\ 6', "", ["OK"]]);
});

test("a click on \"Upload model\" exports the model, uploads it and lists it", async () => {
    await workbench.signIn();
    assert.equal(await workbench.eval("document.querySelector('#file-name').value"), "AC14-FZK-Haus");
    await workbench.type("#file-name", "Haus Süd");
    await workbench.click("#upload-model");
    await workbench.until("document.querySelector('#upload-status').dataset.state === 'done'", 60);

    const [document] = JSON.parse(await workbench.eval("KESTAPI.GetIfcDocuments()"));
    assert.equal(document.name, "Haus Süd.ifc");
    await workbench.until(`document.querySelector('#documents [data-document-id="${document.id}"]')`);
    const exported = join(workbench.data, "Temporary", "Haus Süd.ifc");
    assert.equal(document.size, statSync(exported).size);
    const calls = workbench.events.filter((event) => event.event === "page-call").map((event) => event.script);
    assert.equal(calls.filter((script) => script === "CompleteExportModel()").length, 1);

    await workbench.click(`#documents [data-document-id="${document.id}"] button`);
    const saved = join(workbench.data, "Downloads", "Haus Süd.ifc");
    for (let i = 0; i < 100 && !isWhole(saved, document.size); ++i) await new Promise((done) => setTimeout(done, 50));
    assert.ok(readFileSync(saved).equals(readFileSync(exported)), "the download differs from the export");
});

function isWhole(file, size) {
    try {
        return statSync(file).size === size;
    } catch {
        return false;
    }
}

test("the palette follows menu and messages, and its page survives being closed", async () => {
    await workbench.eval("window.mark = 42");
    assert.deepEqual(await workbench.do("menu"), { ok: true, visible: false, checked: false });
    assert.deepEqual(await workbench.do("menu"), { ok: true, visible: true, checked: true });
    assert.equal((await workbench.do("palette", { message: 1 })).visible, false);
    assert.equal((await workbench.do("palette", { message: 6 })).visible, true);
    assert.equal(await workbench.eval("window.mark"), 42);
    const marks = workbench.events.filter((event) => event.event === "menu").map((event) => event.checked);
    assert.deepEqual(marks, [false, true, false, true]);
});

test("a file that is no model is refused with a reason, and the open project stays", async () => {
    const answer = await workbench.ask({ do: "open", file: new URL(import.meta.url).pathname });
    assert.equal(answer.ok, false);
    const alert = await workbench.event((event) => event.event === "alert" && event.small.includes("palette.test.mjs"));
    assert.match(alert.large, /not opened/);
    assert.equal((await workbench.do("state")).project, "AC14-FZK-Haus");
});

test("an answered question about the state names what is there, and leaving ends with 0", async () => {
    const state = await workbench.do("state");
    assert.deepEqual(state.threads, []);
    assert.equal(state.handles, 0);
    assert.deepEqual(state.palette, { visible: true, checked: true });
    assert.equal(await workbench.quit(), 0);
});
