import assert from "node:assert/strict";
import test from "node:test";
import { labelOf, readElements } from "../../WebApp/logic/elements.js";
import { checkFileName, proposedFileName } from "../../WebApp/logic/file-name.js";
import { formatElapsed, formatSize } from "../../WebApp/logic/format.js";
import { isLoopback, readHostInfo } from "../../WebApp/logic/host-info.js";
import { readUploadAnswer } from "../../WebApp/logic/upload-answer.js";
import { readViewpointText } from "../../WebApp/logic/viewpoint-text.js";
import { texts } from "../../WebApp/text.js";

test("typed file names lose blanks and the extension, and bad ones are named", () => {
    const cases = [
        ["Tower", "Tower", null],
        ["  Haus Süd.IFC ", "Haus Süd", null],
        ["v1.2 final", "v1.2 final", null],
        ["", "", "empty"],
        [" .ifc", "", "empty"],
        ["a/b", "a/b", "character"],
        ["a\\b", "a\\b", "character"],
        ["C:model", "C:model", "character"],
        ["a\u0000b", "a\u0000b", "character"],
        ["lone \ud800", "lone \ud800", "character"],
        ["..", "..", "dots"],
        ["up..dir", "up..dir", "dots"],
        [".hidden", ".hidden", "dots"],
        ["end.", "end.", "dots"],
        ["end .ifc", "end ", "dots"],
        ["ü".repeat(100), "ü".repeat(100), null],
        ["ü".repeat(101), "ü".repeat(101), "long"],
    ];
    for (const [typed, name, problem] of cases) {
        assert.deepEqual(checkFileName(typed), { name, problem }, JSON.stringify(typed));
    }
});

test("the name proposed for a project can be used as it stands", () => {
    assert.equal(proposedFileName("Duplex.ifc"), "Duplex");
    assert.equal(proposedFileName(""), "");
    for (const project of ["A/B: Süd..", "..\\x", "  .plan. ", "tab\there", "🏠".repeat(80), `${"a".repeat(200)}. b`]) {
        assert.equal(checkFileName(proposedFileName(project)).problem, null, project);
    }
});

test("host information", () => {
    assert.deepEqual(readHostInfo("de,http://127.0.0.1:8465/api/,0.44.0.58128,26"), {
        language: "de",
        apiBase: "http://127.0.0.1:8465/api/",
        addOnVersion: "0.44.0.58128",
        hostVersion: "26",
    });
    assert.equal(readHostInfo("en,https://a.example/x,y/api,1,26").apiBase, "https://a.example/x,y/api/");
    for (const wrong of ["", "en,26", "en,,1,26", "en,javascript:1,1,26", null])
        assert.equal(readHostInfo(wrong), null);
    assert.ok(
        isLoopback("http://127.8.0.1:1/api/") &&
            isLoopback("http://[::1]/") &&
            isLoopback("http://localhost/"),
    );
    assert.ok(!isLoopback("https://127.0.0.1.example.com/api/"));
});

test("the answer to an upload", () => {
    const cases = [
        ['[{"id":"a","name":"x.ifc"},{"id":"b"}]', { document: { id: "a", name: "x.ifc" } }],
        ['[{"id":7}]', { document: { id: 7 } }],
        ['{"error":"Sign in again."}', { error: "Sign in again." }],
        ["[]", { error: "" }],
        ["[null]", { error: "" }],
        ['[{"name":"x"}]', { error: "" }],
        ['{"error":{}}', { error: "" }],
        ["null", { error: "" }],
        ["", { error: "" }],
        ["<html>502</html>", { error: "" }],
    ];
    for (const [text, read] of cases) assert.deepEqual(readUploadAnswer(text), read, text);
});

test("elements are read from objects, texts and bare GUIDs", () => {
    const list = [
        '{"ifcGuid":"1a$","name":"Beam \\"3\\""}',
        { ifcGuid: "2b_", name: "" },
        { ifcGuid: "3c" },
        "4d",
        "{broken",
        { name: "nobody" },
        null,
        "",
    ];
    const read = readElements(list);
    assert.deepEqual(read.map(({ ifcGuid }) => ifcGuid), ["1a$", "2b_", "3c", "4d"]);
    assert.deepEqual(read.map(labelOf), ['Beam "3"', "2b_", "3c", "4d"]);
    for (const wrong of [undefined, null, "x", {}]) assert.deepEqual(readElements(wrong), []);
});

test("the snapshot's id in a viewpoint text, or what the service said instead of one", () => {
    const withId = (id) => `{"cameraType":1,"imageId":"${id}","creatingTool":"Archicad","sections":[]}`;
    const good = withId("5f0a-B_9");
    assert.deepEqual(readViewpointText(good), { viewpoint: JSON.parse(good), snapshot: "5f0a-B_9" });
    const cases = [
        [withId('{"error":"Say \\"x\\" {1}."}'), 'Say "x" {1}.'],
        [withId('{"error":{}}'), ""],
        [withId("<html>502</html>"), ""],
        [withId('<p class="x">'), ""],
        [withId(""), ""],
        ['{"cameraType":1}', ""],
        ['{"imageId":7}', ""],
        ["null", ""],
        ["", ""],
    ];
    for (const [text, refusal] of cases) assert.deepEqual(readViewpointText(text), { refusal }, text);
});

test("sizes and times", () => {
    const sizes = [
        [0, "0 B"],
        [999, "999 B"],
        [1000, "1.0 KB"],
        [9960, "10 KB"],
        [999_700, "1.0 MB"],
        [2_386_123, "2.4 MB"],
    ];
    for (const [bytes, shown] of sizes) assert.equal(formatSize(bytes, "en"), shown.replace(" ", "\u00a0"));
    assert.equal(formatSize(2_386_123, "de"), "2,4\u00a0MB");
    assert.equal(formatSize(undefined, "en"), "");
    assert.equal(formatElapsed(59_999), "59\u00a0s");
    assert.equal(formatElapsed(125_000), "2\u00a0min 05\u00a0s");
    assert.equal(formatElapsed(-5), "0\u00a0s");
});

test("English and German have the same texts with the same places to fill in", () => {
    const shape = (all) =>
        Object.entries(all).map(([key, said]) => `${key} ${(said.match(/\{\w+\}/g) ?? []).sort().join(" ")}`);
    assert.deepEqual(shape(texts.de), shape(texts.en));
});
