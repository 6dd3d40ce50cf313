import assert from "node:assert/strict";
import { copyFileSync, readdirSync, rmSync, writeFileSync } from "node:fs";
import { join } from "node:path";
import { after, before, test } from "node:test";

import { house, Workbench } from "./workbench.mjs";

const api = "http://127.0.0.1:8465/api/";
const plan = (number, format) => ({ name: `Plan Süd ${number}`, show: "plan", storey: number % 2, format, scale: 100 });
const set = {
    name: "Ausführung",
    items: [
        {
            name: "Grundrisse",
            items: [
                ...[1, 2, 3, 4, 5, 6].map((number) => plan(number, "pdf")),
                { name: "Bilder", items: [7, 8, 9, 10].map((number) => plan(number, number % 2 ? "png" : "jpeg")) },
            ],
        },
        { name: "Perspektive", show: "3d", format: "png" },
        { name: "Modell", show: "model" },
        { name: "Keller", show: "plan", storey: "Keller", format: "pdf" }, // there is none
    ],
};

let workbench;
let file;

before(async () => {
    workbench = new Workbench();
    file = join(workbench.folder, "Haus Süd.ifc");
    copyFileSync(house, file);
    writeFileSync(join(workbench.folder, "Haus Süd.publisher.json"), JSON.stringify({ sets: [set] }));
    await openPublishTab();
});

after(() => workbench.remove());

async function openPublishTab() {
    await workbench.do("open", { file });
    await workbench.signIn();
    await workbench.click("#tab-publish");
    await workbench.until("document.querySelector('#publish-tree li')");
}

const tick = (title) =>
    workbench.eval(`[...document.querySelectorAll("#publish-tree label")]
        .find((label) => label.textContent === ${JSON.stringify(title)}).control.click()`);

const status = (state) => `document.querySelector('#publish-status').dataset.state === '${state}'`;

const rows = () =>
    workbench.eval(`[...document.querySelectorAll("[data-publish-key]")].map((row) => [
        row.dataset.publishKey, row.dataset.state, row.querySelector("[data-field=docName]").value,
        row.dataset.documentId ?? ""])`);

const documents = async () => {
    const token = await workbench.eval('JSON.parse(sessionStorage.getItem("kestrane.signedIn")).token');
    const headers = { "X-Project-Authorization": `bearer ${token}` };
    const get = async (path) => fetch(api + path, { headers });
    const folder = await workbench.eval("document.querySelector('#folder').value");
    return { get, list: await (await get(`documents?folderId=${folder}`)).json() };
};

test("twelve ticked items are published into files and uploaded; what cannot be published is told", async () => {
    await workbench.do("answer", { to: "report", value: null });
    for (const title of ["Grundrisse", "Perspektive", "Modell", "Keller"]) await tick(title);
    await workbench.until("document.querySelectorAll('[data-publish-key]').length === 13");
    await workbench.click("#publish-all");
    assert.equal(await workbench.eval("document.querySelector('#publish-all').disabled"), true);
    await workbench.event(({ event, large }) => event === "alert" && large.includes("publish the some items"), 60);
    const report = await workbench.event(({ event, kind }) => event === "dialog" && kind === "report", 200);
    assert.match(JSON.stringify(report), /Keller/);
    await workbench.event(({ event, script }) => event === "page-call" && script === "CompleteExportPublish()", 60);
    await workbench.until(status("failed"), 20);

    const all = await rows();
    const done = all.filter(([, state]) => state === "done");
    assert.deepEqual(all.filter(([, state]) => state !== "done").map(([, state, name]) => [state, name]), [["failed", "Keller"]]);
    const ids = JSON.parse(await workbench.eval("KESTAPI.CompleteExportPublish()"));
    assert.deepEqual(ids, Object.fromEntries(done.map(([key, , , id]) => [key, id])));
    const { get, list } = await documents();
    assert.deepEqual(new Set(list.map(({ id }) => id)), new Set(Object.values(ids)));
    assert.deepEqual(list.map(({ name }) => name.split(".").at(-1)).sort().join(), "ifc,jpg,jpg,pdf,pdf,pdf,pdf,pdf,pdf,png,png,png");
    const pdf = list.find(({ name }) => name === "Plan Süd 1.pdf");
    assert.match(await (await get(`document/${pdf.id}`)).text(), /^%PDF-/);
});

test("after a restart the selection and the history are there, and can be uploaded again; a vanished file fails alone", async () => {
    const before = (await rows()).filter(([, state]) => state === "done").map(([key, , name]) => [key, name]);
    await workbench.quit();
    workbench.events = [];
    workbench.start();
    await openPublishTab();
    await workbench.until("document.querySelectorAll('[data-publish-key]').length === 12");
    assert.deepEqual((await rows()).map(([key, state, name]) => [key, name, state]), before.map((row) => [...row, "prepared"]));
    await workbench.until("document.querySelectorAll('#export-history li').length === 12");

    await workbench.until("!document.querySelector('#upload-publish').disabled");
    await workbench.click("#upload-publish");
    await workbench.until(status("done"), 60);
    assert.deepEqual((await documents()).list.map(({ version }) => version), Array(12).fill(2));

    const prepared = join(workbench.data, "Temporary", "PreparePublish");
    rmSync(join(prepared, readdirSync(prepared).find((name) => name.startsWith(before[0][0]))));
    await workbench.click("#upload-publish");
    await workbench.until(status("failed"), 60);
    assert.deepEqual((await rows()).map(([, state]) => state), ["failed", ...Array(11).fill("done")]);
    assert.deepEqual((await documents()).list.map(({ version }) => version).sort(), [2, ...Array(11).fill(3)]);
    await workbench.until("document.querySelectorAll('#export-history li').length === 35");
});
