import assert from "node:assert/strict";
import { after, before, test } from "node:test";

import { house, Workbench } from "./workbench.mjs";

const api = "http://127.0.0.1:8465/api/";

let workbench;

before(async () => {
    workbench = new Workbench();
    await workbench.do("open", { file: house });
    await workbench.signIn();
    await workbench.click("#tab-plans");
});

after(() => workbench.remove());

const state = () => workbench.eval("document.querySelector('#plan-status').dataset.state");

async function make(format, name) {
    await workbench.eval(`(() => { const field = document.querySelector("#plan-format");
        field.value = ${JSON.stringify(format)}; field.dispatchEvent(new Event("change")); })()`);
    await workbench.type("#plan-name", name);
    await workbench.click("#upload-plan");
    await workbench.until("['done', 'failed'].includes(document.querySelector('#plan-status').dataset.state)", 60);
}

async function stored() {
    const token = await workbench.eval('JSON.parse(sessionStorage.getItem("kestrane.signedIn")).token');
    const headers = { "X-Project-Authorization": `bearer ${token}` };
    const folder = await workbench.eval("document.querySelector('#folder').value");
    const list = await (await fetch(`${api}documents?folderId=${folder}`, { headers })).json();
    const read = async ({ id }) => Buffer.from(await (await fetch(`${api}document/${id}`, { headers })).arrayBuffer());
    return { list, read };
}

test("with the 3D window in front the host says why there is no plan, and the page what to do", async () => {
    await workbench.do("window", { type: "3d" });
    await make("dwg", "Ansicht");
    assert.equal(await state(), "failed");
    assert.match(await workbench.eval("document.querySelector('#plan-status').textContent"), /not the 3D window/);
    await workbench.event(({ event, large }) => event === "alert" && large === "Current view isn't 2D view.");
});

test("each format is made and uploaded, and what is stored is of that type; a second one is version 2", async () => {
    await workbench.do("window", { type: "plan", story: 0 });
    const beginnings = { dwg: "AC1015", pdf: "%PDF-", png: "\x89PNG\r\n", jpeg: "\xff\xd8\xff" };
    for (const [format, beginning] of Object.entries(beginnings)) {
        await make(format, "Erdgeschoß 1");
        assert.equal(await state(), "done", await workbench.eval("document.querySelector('#plan-status').textContent"));
        const { list, read } = await stored();
        const extension = format === "jpeg" ? "jpg" : format;
        const bytes = await read(list.find(({ name }) => name === `Erdgeschoß 1.${extension}`));
        assert.equal(bytes.toString("latin1", 0, beginning.length), beginning);
        assert.ok(bytes.length > 5000, `${format}: ${bytes.length} bytes`);
    }
    await make("dwg", "Erdgeschoß 1.dwg");
    assert.equal(await state(), "done");
    const { list } = await stored();
    assert.equal(list.length, 4);
    assert.equal(list.find(({ name }) => name.endsWith(".dwg")).version, 2);
    await workbench.until("document.querySelectorAll('#documents .fresh').length === 1");
});
