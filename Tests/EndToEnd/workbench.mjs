// The Workbench under test: a process of its own, driven over its console.
import { spawn } from "node:child_process";
import { mkdtempSync, rmSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { createInterface } from "node:readline";

const bin = process.env.KESTRANE_BIN ?? new URL("../../build/release/bin", import.meta.url).pathname;

/** A Debian sample: a house of 110 elements with geometry. */
export const house = "/usr/share/assimp/models/IFC/AC14-FZK-Haus.ifc";

export class Workbench {
    events = [];
    #answers = [];
    #waiting = [];

    /** Starts one with a data folder of its own. */
    constructor(...options) {
        this.folder = mkdtempSync(join(tmpdir(), "kestrane-test-"));
        this.data = join(this.folder, "data");
        this.start(...options);
    }

    /** Starts the program (again) on the same data folder. */
    start(...options) {
        this.process = spawn(
            join(bin, "kestrane-workbench"),
            ["--headless", "--console", "--data-dir", this.data, ...options],
            { stdio: ["pipe", "pipe", "inherit"] },
        );
        createInterface({ input: this.process.stdout }).on("line", (line) => {
            if (line.startsWith("{")) this.#take(JSON.parse(line));
        });
        this.ended = new Promise((done) => this.process.on("close", (status, signal) => done(signal ?? status)));
        this.ended.then((status) => this.#answers.splice(0).forEach((answer) => answer({ ok: false, error: `ended: ${status}` })));
    }

    #take(line) {
        if ("ok" in line) {
            this.#answers.shift()?.(line);
            return;
        }
        this.events.push(line);
        this.#waiting = this.#waiting.filter(({ matches, done }) => !(matches(line) && (done(line), true)));
    }

    /** The command's answer, whatever it says. */
    ask(command) {
        return new Promise((done) => {
            this.#answers.push(done);
            this.process.stdin.write(JSON.stringify(command) + "\n");
        });
    }

    /** The command's answer; throws when it failed. */
    async do(name, more = {}) {
        const answer = await this.ask({ do: name, ...more });
        if (!answer.ok) throw new Error(`${name}: ${answer.error}`);
        return answer;
    }

    async eval(script) {
        return (await this.do("eval", { script })).value;
    }

    /** Waits until the page's expression is true. */
    async until(expression, seconds = 20) {
        const deadline = Date.now() + seconds * 1000;
        while (Date.now() < deadline) {
            if ((await this.ask({ do: "eval", script: `Boolean(${expression})` })).value === true) return;
            await new Promise((done) => setTimeout(done, 50));
        }
        throw new Error(`the page did not come to: ${expression}\n${JSON.stringify(await this.ask({ do: "eval", script: "document.body.innerText" }))}`);
    }

    /** The next event, or one that came already, that the function accepts. */
    event(matches, seconds = 20) {
        const found = this.events.find(matches);
        if (found) return Promise.resolve(found);
        return new Promise((done, fail) => {
            const timer = setTimeout(() => fail(new Error(`no such event; there were ${JSON.stringify(this.events)}`)), seconds * 1000);
            this.#waiting.push({ matches, done: (line) => (clearTimeout(timer), done(line)) });
        });
    }

    /** Signs in as a person does, and waits for the folder's documents. */
    async signIn() {
        await this.until("document.querySelector('#sign-in')");
        await this.type("#user", "demo");
        await this.type("#password", "demo");
        await this.eval("document.querySelector('#sign-in').requestSubmit()");
        await this.until("document.querySelector('#upload-model') && document.querySelector('#folder').value");
    }

    type(selector, text) {
        return this.eval(`(() => { const field = document.querySelector(${JSON.stringify(selector)});
            field.value = ${JSON.stringify(text)}; field.dispatchEvent(new Event("input", {bubbles: true})); })()`);
    }

    click(selector) {
        return this.eval(`document.querySelector(${JSON.stringify(selector)}).click()`);
    }

    /** Ends it as a person does; its exit status. */
    async quit() {
        await this.ask({ do: "quit" });
        return this.ended;
    }

    /** Ends it in any case and removes its files. */
    async remove() {
        if (this.process.exitCode === null) this.process.kill("SIGKILL");
        await this.ended;
        rmSync(this.folder, { recursive: true, force: true });
    }
}
