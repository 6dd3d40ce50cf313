import assert from "node:assert/strict";
import { readFileSync, writeFileSync } from "node:fs";
import { join } from "node:path";
import { after, before, test } from "node:test";

import { localName } from "../../WebApp/logic/models.js";
import { Workbench } from "./workbench.mjs";

const api = "http://127.0.0.1:8465/api/";
const sample = readFileSync(new URL("../../Samples/Gartenpavillon.ifc", import.meta.url), "latin1");
const alphabet = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_$";
const rooted = /^(#\d+=IFC\w+\(')([0-3][\w$]{21})(',#5,)('?)/gm;
const element = /^#\d+=IFC(?:COLUMN|DOOR|FURNITURE|GEOGRAPHICELEMENT|OPENINGELEMENT|RAILING|ROOF|SLAB|STAIR|STAIRFLIGHT|WALL|WINDOW)\('([^']{22})'/gm;

/** The sample as another model: each GlobalId is another, each name begins with the trade's. */
const variant = (trade, number) =>
    sample.replace(rooted, (_, head, id, tail, quote) => {
        const turned = [...id.slice(1)].map((digit) => alphabet[(alphabet.indexOf(digit) + number) % 64]).join("");
        return head + id[0] + turned + tail + (quote && `'${trade} `);
    });

const trades = {
    Architecture: variant("Architecture", 1),
    "Plumbing 1/2": variant("Plumbing", 2).replace("356512.25", "356542.25"), // 30 m to the east
    Structure: variant("Structure", 3),
};
const elementIds = (model) => [...model.matchAll(element)].map((match) => match[1]);
const allIds = Object.values(trades).flatMap(elementIds);

let workbench;
let headers;
let count; // of elements in each of the models
const documents = {};

before(async () => {
    assert.equal(new Set(allIds).size, 3 * elementIds(sample).length);
    workbench = new Workbench();
    const file = join(workbench.folder, "Before.ifc");
    writeFileSync(file, trades.Structure, "latin1");
    count = (await workbench.do("open", { file })).elements;
    await workbench.signIn();
    const session = await send("POST", "session", JSON.stringify({ user: "demo", password: "demo" }));
    headers = { "X-Project-Authorization": `bearer ${session.token}` };
    const folder = await workbench.eval("document.querySelector('#folder').value");
    for (const [name, model] of Object.entries(trades)) {
        const form = new FormData();
        form.append("file", new Blob([Buffer.from(model, "latin1")]), `${name}.ifc`);
        [documents[name]] = await send("POST", `document?folderId=${folder}`, form);
    }
});

after(() => workbench.remove());

const send = async (method, path, body) => (await fetch(api + path, { method, headers, body })).json();

const status = (state) => `document.querySelector('#models-status').dataset.state === '${state}'`;

test("three models that are ticked and opened are one project in the host, to be undone step by step", async () => {
    await workbench.click("#tab-models");
    await workbench.until("document.querySelectorAll('[data-model-name]').length === 3");
    for (const name of Object.keys(trades)) await workbench.click(`[data-model-name="${name}"] input[type=checkbox]`);
    await workbench.click("#open-models");
    assert.equal(await workbench.eval("document.querySelector('#open-models').disabled"), true);
    await workbench.event(({ event, script }) => event === "page-call" && script === "CompleteImportModels()", 60);
    await workbench.event(({ event, large }) => event === "alert" && large.startsWith("Model is downloaded."));
    await workbench.until(status("done"), 120);

    const project = `${localName("Structure", documents.Structure.id)}-V1`;
    const state = await workbench.do("state");
    assert.equal(state.project, project);
    assert.equal(state.elements, 3 * count);
    assert.deepEqual(state.undo, Array(2 * count).fill("Create Element"));
    assert.equal(state.handles, 0);
    assert.equal(await workbench.eval("document.querySelector('#file-name').value"), project);
});

test("the merged project, uploaded by the page, holds every element of the three", async () => {
    await workbench.click("#tab-documents");
    await workbench.type("#file-name", "Merged");
    await workbench.click("#upload-model");
    await workbench.until("document.querySelector('#upload-status').dataset.state === 'done'", 60);
    const [{ id }] = JSON.parse(await workbench.eval("KESTAPI.GetIfcDocuments()"));
    const merged = await (await fetch(`${api}resource/${id}`, { headers })).text();
    const found = new Set(elementIds(merged));
    assert.deepEqual(allIds.filter((globalId) => !found.has(globalId)), []);
    assert.equal(found.size, allIds.length);

    await workbench.click("#tab-models");
    await workbench.until("document.querySelector('[data-model-name=\"Merged\"]')");
});

test("a last model that cannot be opened is told, and the host says why", async () => {
    await workbench.do("save", { file: join(workbench.folder, "Merged.ifc") }); // nothing left to ask about
    const form = new FormData();
    form.append("file", new Blob(["<html>502</html>"]), "Structure.ifc");
    const folder = await workbench.eval("document.querySelector('#folder').value");
    await send("POST", `document?folderId=${folder}`, form);
    await workbench.click("#refresh-models");
    await workbench.until("document.querySelector('[data-model-name=\"Structure\"] select').length === 2");
    await workbench.click("#open-models");
    await workbench.until(status("failed"), 120);
    assert.match(await workbench.eval("document.querySelector('#models-status').innerText"), /“Structure” could not be opened/);
    await workbench.event(({ event, large, small }) => event === "alert" && (large + small).includes("Structure-"));
});
