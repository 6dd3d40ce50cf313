import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { join } from "node:path";
import { after, before, test } from "node:test";

import { house, Workbench } from "./workbench.mjs";

let workbench;
let guids; // of all elements, in the model's order

before(async () => {
    workbench = new Workbench();
    await workbench.do("open", { file: house });
    await workbench.signIn();
    await workbench.do("show", { all: true });
    guids = [...readFileSync(house, "latin1").matchAll(/^#\d+= IFC(?:WALLSTANDARDCASE|WINDOW|DOOR|BEAM|MEMBER)\('([^']{22})'/gm)].map((match) => match[1]);
    await workbench.click("#tab-issues");
    await workbench.click("#new-topic");
    await workbench.type("#topic-title", "Beam in the way");
    await workbench.click("#create-topic");
    await workbench.until("document.querySelector('#new-viewpoint')");
});

after(() => workbench.remove());

const picture = async (name) => {
    const file = join(workbench.folder, `${name}.png`);
    await workbench.do("picture", { file, of: "3d" });
    return readFileSync(file).toString("base64");
};

/** The share of the pixels that differ visibly, as the browser decodes the two pictures. */
const difference = (a, b) =>
    workbench.eval(`(async () => {
        const [a, b] = await Promise.all(${JSON.stringify([a, b])}.map(async (base64) => {
            const bitmap = await createImageBitmap(await (await fetch("data:image/png;base64," + base64)).blob());
            const context = new OffscreenCanvas(bitmap.width, bitmap.height).getContext("2d");
            context.drawImage(bitmap, 0, 0);
            return context.getImageData(0, 0, bitmap.width, bitmap.height);
        }));
        if (a.width !== b.width || a.height !== b.height) return 1;
        let count = 0;
        for (let i = 0; i < a.data.length; i += 4)
            if (Math.max(...[0, 1, 2].map((k) => Math.abs(a.data[i + k] - b.data[i + k]))) > 12) ++count;
        return count / (a.width * a.height);
    })()`);

/** Clicks "New viewpoint" and waits until it is in the list; its id. */
const take = async () => {
    const ids = () => workbench.eval("[...document.querySelectorAll('[data-viewpoint-id]')].map(card => card.dataset.viewpointId)");
    const known = await ids();
    await workbench.click("#new-viewpoint");
    await workbench.until("document.querySelector('#viewpoint-status').dataset.state === 'done'", 30);
    await workbench.until(`document.querySelectorAll('[data-viewpoint-id]').length > ${known.length}`);
    return (await ids()).find((id) => !known.includes(id));
};

const open = async (id) => {
    await workbench.click(`[data-viewpoint-id="${id}"] .open-viewpoint`);
    await workbench.until("document.querySelector('#viewpoint-status').dataset.state === 'done'", 30);
};

/** Somewhere else, looking at something else. */
const leave = async () => {
    await workbench.do("projection", { perspective: true, camera: [60, 50, 40], target: [0, 0, 10], viewCone: 35 });
    await workbench.do("show", { ifcGuids: guids.slice(0, 3) });
    await workbench.do("cut", { planes: [[0.6, 0, 0.8, 4]] });
    await workbench.do("select", { ifcGuids: guids.slice(3, 9) });
    await workbench.do("window", { type: "plan", story: 0 });
};

const views = {
    "the whole house": async () => {
        await workbench.do("projection", { perspective: true, camera: [-12, -14, 9], target: [5, 5, 2], viewCone: 60 });
        await workbench.do("select", { ifcGuids: [guids[10]] });
    },
    "a section through it": async () => {
        await workbench.do("cut", { planes: [[0, -1, 0, -5], [0, 0, 1, 6]] });
        await workbench.do("projection", { perspective: true, camera: [6, -12, 5], target: [6, 5, 3], viewCone: 55 });
    },
    "half of the elements": async () => {
        await workbench.do("show", { ifcGuids: guids.filter((_, number) => number % 2 === 0) });
        await workbench.do("projection", { perspective: true, camera: [20, -10, 12], target: [5, 5, 2], viewCone: 50 });
    },
    "a single wall, selected": async () => {
        await workbench.do("show", { ifcGuids: [guids[0]] });
        await workbench.do("select", { ifcGuids: [guids[0]] });
        await workbench.do("projection", { perspective: true, camera: [-8, -9, 4], target: [5, 5, 1], viewCone: 45 });
    },
};

for (const [name, arrange] of Object.entries(views)) {
    test(`a viewpoint of ${name} brings back camera, elements, planes, selection and picture`, async () => {
        await workbench.do("window", { type: "3d" });
        await workbench.do("show", { all: true });
        await workbench.do("cut", { planes: [] });
        await workbench.do("select", { ifcGuids: [] });
        await arrange();
        const before = await workbench.do("state");
        const taken = await picture("taken");
        const id = await take();

        await leave();
        const left = await picture("left");
        assert.ok((await difference(taken, left)) > 0.05, "leaving changed too little for the comparison to mean anything");
        await open(id);

        const after = await workbench.do("state");
        assert.equal(after.window, "3d");
        assert.equal(after.shown, before.shown);
        assert.deepEqual(after.selection, before.selection);
        assert.equal(after.projection.perspective, true);
        assert.equal(after.projection.viewCone, before.projection.viewCone);
        for (const axis of [0, 1, 2]) {
            assert.ok(Math.abs(after.projection.camera[axis] - before.projection.camera[axis]) < 1e-6);
            const length = (projection) => Math.hypot(...[0, 1, 2].map((k) => projection.target[k] - projection.camera[k]));
            const looks = (projection) => (projection.target[axis] - projection.camera[axis]) / length(projection);
            assert.ok(Math.abs(looks(after.projection) - looks(before.projection)) < 1e-6);
        }
        assert.equal(after.planes.length, before.planes.length);
        after.planes.flat().forEach((number, at) => assert.ok(Math.abs(number - before.planes.flat()[at]) < 1e-6));
        assert.equal(after.handles, 0);
        const restored = await picture("restored");
        assert.ok((await difference(taken, restored)) < 0.002, `differs by ${await difference(taken, restored)}`);
    });
}

test("the stored text is the add-on's, unchanged, and its picture is the one that was uploaded", async () => {
    await workbench.do("window", { type: "3d" });
    const id = await take();
    const [text, stored, snapshot] = await workbench.eval(`(async () => {
        const base = (await KESTAPI.GetApplicationInfo()).split(",")[1];
        const session = await (await fetch(base + "session", { method: "POST", headers: { "Content-Type": "application/json" },
            body: JSON.stringify({ user: "demo", password: "demo" }) })).json();
        const headers = { "X-Project-Authorization": "bearer " + session.token };
        const stored = await (await fetch(base + "viewpoints/${id}", { headers })).text();
        const image = await (await fetch(base + "resource/" + JSON.parse(stored).imageId, { headers })).arrayBuffer();
        return [await KESTAPI.AddViewpoint(), stored, btoa(String.fromCharCode(...new Uint8Array(image).slice(0, 8)))];
    })()`);
    assert.equal(stored, text);
    assert.equal(Buffer.from(snapshot, "base64").toString("latin1").slice(1, 4), "PNG");
    await workbench.until(`document.querySelector('[data-viewpoint-id="${id}"] img')?.naturalWidth > 0`);
});

test("the selection is listed by name as it changes, and a click shows the element", async () => {
    await workbench.do("select", { ifcGuids: guids.slice(0, 2) });
    await workbench.until("document.querySelectorAll('#selection-list li[data-ifc-guid]').length === 2");
    await workbench.do("cut", { planes: [[0, 0, 1, 3]] });
    await workbench.click(`#selection-list li[data-ifc-guid="${guids[1]}"] button`);
    for (let i = 0; i < 100 && (await workbench.do("state")).selection.length !== 1; ++i) await new Promise((done) => setTimeout(done, 50));
    const state = await workbench.do("state");
    assert.deepEqual(state.selection, [guids[1]]);
    assert.deepEqual(state.planes, []);
    assert.equal(state.window, "3d");
});

test("an axonometry cannot be taken: the host says what to do, and the page can be used again", async () => {
    await workbench.do("projection", { perspective: false, matrix: [0.8, 0.6, 0, 0, -0.3, 0.4, 0.866, 0, 0.52, -0.69, 0.5, 0] });
    await workbench.click("#new-viewpoint");
    await workbench.event((event) => event.event === "alert" && event.large.startsWith("You are now in 3D-display mode Axonometry."));
    await workbench.until("document.querySelector('#cancel-viewpoint')");
    await workbench.click("#cancel-viewpoint");
    await workbench.until("!document.querySelector('#new-viewpoint').disabled");
    assert.equal((await workbench.do("state")).handles, 0);
});
