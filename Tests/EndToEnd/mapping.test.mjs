import assert from "node:assert/strict";
import { readdirSync, readFileSync, writeFileSync } from "node:fs";
import { join } from "node:path";
import { after, before, test } from "node:test";

import { Workbench } from "./workbench.mjs";

const samples = new URL("../../Samples/", import.meta.url).pathname;
const sample = (extension) => join(samples, readdirSync(samples).find((name) => name.endsWith(extension)));

let workbench;

before(async () => {
    workbench = new Workbench();
    await workbench.do("open", { file: sample(".ifc") });
    await workbench.signIn();
    await workbench.click("#tab-mapping");
    await workbench.until("document.querySelector('#choose-mapping')");
});

after(() => workbench.remove());

const path = () => workbench.eval("document.querySelector('#mapping-path').textContent");

const dialogs = (kind) => workbench.events.filter((event) => event.event === "dialog" && event.kind === kind);

async function upload(name) {
    await workbench.type("#file-name", name);
    await workbench.click("#upload-model");
    await workbench.until("document.querySelector('#upload-status').dataset.state === 'done'", 60);
    return readFileSync(join(workbench.data, "Temporary", `${name}.ifc`), "utf8");
}

test("a model is exported with the chosen mapping, and as it is when that is not to be applied", async () => {
    const plain = readFileSync(sample(".ifc"), "utf8");
    const wrong = join(workbench.folder, "wrong.xml");
    writeFileSync(wrong, "<SchemeItems/>");
    for (const [value, shown] of [
        [null, "No mapping file chosen"],
        [wrong, "No mapping file chosen"],
        [sample(".xml"), sample(".xml")],
    ]) {
        await workbench.do("answer", { to: "file", value });
        const asked = dialogs("file").length;
        await workbench.click("#choose-mapping");
        await workbench.until(`document.querySelector('#mapping-path').textContent === ${JSON.stringify(shown)}`);
        if (value !== sample(".xml")) await workbench.until("document.querySelector('#mapping-message .notice')");
        assert.equal(dialogs("file").length, asked + 1);
    }
    assert.deepEqual(dialogs("file")[0].texts, ["Property Mapping File", "Property Mapping File"]);
    assert.equal(await workbench.eval("document.querySelector('#mapping-message').textContent"), "");

    const mapped = await upload("Mapped");
    const { written, leftOut } = await workbench.event(({ event }) => event === "mapped");
    const added = mapped.split("\n").length - plain.split("\n").length;
    assert.deepEqual({ written, leftOut, added }, { written: 21, leftOut: 0, added: 15 });
    await workbench.ask({ do: "eval", script: "window.isOld = true; location.reload()" });
    await workbench.until("!window.isOld && document.querySelector('#use-map-file')?.checked");
    assert.equal(await path(), sample(".xml"));
    await workbench.until("document.querySelector('#folder').value");
    await workbench.click("#use-map-file");
    assert.equal(await upload("Plain"), plain);
});

test("a new property gets a name that is not taken", async () => {
    const names = "JSON.stringify([...document.querySelectorAll('#property-names li')].map((item) => item.textContent))";
    const asked = () => dialogs("property-name").length;
    for (const [value, expected] of [
        ["Höhe", ["Höhe"]],
        [" Höhe", ["Höhe", " Höhe"]],
        ["Höhe", ["Höhe", " Höhe"]], // taken: told, and the answer leaves the dialog open, which cancels it
        [null, ["Höhe", " Höhe"]],
        ["höhe", ["Höhe", " Höhe", "höhe"]],
    ]) {
        await workbench.do("answer", { to: "property-name", value });
        const before = asked();
        await workbench.click("#new-property");
        await workbench.event(() => asked() > before);
        await workbench.until(`${names} === ${JSON.stringify(JSON.stringify(expected))}`);
    }
    assert.equal(workbench.events.filter(({ event, large }) => event === "alert" && large === "The property name exists.").length, 1);
    assert.deepEqual(dialogs("property-name")[0].texts, ["Name of the New Property", "OK", "Cancel"]);
});
