// SPDX-License-Identifier: MIT
// The program of the page without a browser: this page only stores the messages that it gets.
import { readFileSync, writeFileSync } from "node:fs";

const build = new URL("../../build/web/", import.meta.url);
globalThis.document ??= /** @type {any} */ ({ currentScript: null }); // asked for by the compiler's loader
// Node 18 takes a .js file for a module only if a package.json declares it; browsers need none.
writeFileSync(new URL("../package.json", build), '{ "type": "module" }\n');
const { loadProgram } = await import(new URL("program.js", build).href);
export const ids = await import(new URL("ids.js", build).href);
const wasmBinary = readFileSync(new URL("toravane.wasm", build));

export const pause = (milliseconds) => new Promise((done) => setTimeout(done, milliseconds));

/** Waits for something true and returns it. */
export async function until(what, seconds, test) {
    for (const end = performance.now() + seconds * 1000; ; await pause(10)) {
        const found = test();
        if (found) return found;
        if (performance.now() > end) throw new Error(`waited ${seconds} s for: ${what}`);
    }
}

/** A frame of SiRF binary from its payload in hexadecimal. */
export function frame(payload) {
    const bytes = Buffer.from(payload, "hex");
    const sum = bytes.reduce((total, byte) => (total + byte) & 0x7fff, 0);
    return Buffer.concat([Buffer.from([0xa0, 0xa2, bytes.length >> 8, bytes.length & 255]), bytes,
        Buffer.from([sum >> 8, sum & 255, 0xb0, 0xb3])]).toString("latin1");
}

/** A sentence with its checksum. */
export function sentence(body) {
    let sum = 0;
    for (const character of body) sum ^= character.charCodeAt(0);
    return `$${body}*${sum.toString(16).toUpperCase().padStart(2, "0")}\r\n`;
}

export class Engine {
    windows = new Map();
    boxes = new Map();
    lines = [];
    settings = {};
    messages = []; // names, in their order
    sent = ""; // to the page's ports
    opened = [];
    rates = [];
    closed = [];
    downloads = [];
    chart = null;
    plot = null;
    receiver = null;
    found = null;
    playback = null;
    menu = [];
    exitCode = null;
    portError = 0; // with which the page answers

    static async load() {
        const engine = new Engine();
        engine.program = await loadProgram(engine.page(), { wasmBinary });
        return engine;
    }

    page() {
        const change = (property) => (window, value) => {
            this.windows.get(window)[property] = value;
        };
        const handlers = {
            created: (window, parent, owner, kind, id, style, x, y, width, height, text) => {
                this.windows.set(window, { window, parent, owner, kind, id, style, x, y, width, height, text,
                    enabled: true, visible: true, check: 0, items: [], selection: -1 });
            },
            gone: (window) => {
                if (!this.windows.delete(window) && !this.boxes.delete(window)) throw new Error("gone twice");
            },
            placed: (window, x, y, width, height) => Object.assign(this.windows.get(window), { x, y, width, height }),
            box: (window, owner, caption, text, buttons, usual, icon) =>
                this.boxes.set(window, { window, owner, caption, text, buttons, usual, icon }),
            menu: (_window, entries) => (this.menu = entries),
            focus: (window) => (this.focused = window),
            page: (lines) => (this.lines = lines),
            chart: (width, height, pixels, values) => (this.chart = { width, height, pixels, values }),
            plot: (window, left, top, width, height, shapes, values) =>
                (this.plot = { window, left, top, width, height, shapes, values }),
            portOpen: (port, rate) => {
                this.opened.push(port);
                this.rates.push(rate);
                setTimeout(() => this.program.portResult(port, this.portError));
            },
            portRate: (port, rate) => {
                this.rates.push(rate);
                setTimeout(() => this.program.portResult(port, 0));
            },
            portWrite: (_port, bytes) => (this.sent += Buffer.from(bytes).toString("latin1")),
            portClose: (port) => this.closed.push(port),
            receiver: (port, rate, protocol, searching) => (this.receiver = { port, rate, protocol, searching }),
            found: (port, rate, protocol) => (this.found = { port, rate, protocol }),
            download: (name, bytes) => this.downloads.push({ name, text: Buffer.from(bytes).toString("latin1") }),
            setting: (name, value) => (this.settings[name] = value),
            settingGone: (name) => delete this.settings[name],
            playback: (position, length) => (this.playback = { position, length }),
            ended: (exitCode) => (this.exitCode = exitCode),
        };
        for (const property of ["text", "enabled", "visible", "check", "items", "selection", "limit", "style", "colour"])
            handlers[property] = change(property);
        return new Proxy(handlers, {
            get: (target, name) => (...values) => {
                this.messages.push(name);
                target[name](...values);
            },
        });
    }

    /** Bytes from a receiver at one of the page's ports. */
    receive(text, port = 1) {
        this.program.bytes(port, new Uint8Array(Buffer.from(text, "latin1")));
    }

    get main() {
        return [...this.windows.values()].find((window) => window.kind === "main");
    }
    get dialog() {
        return [...this.windows.values()].findLast((window) => window.kind === "dialog" && window.visible);
    }
    get box() {
        return [...this.boxes.values()].at(-1);
    }
    control(id) {
        const found = [...this.windows.values()].find((w) => w.parent === this.dialog?.window && w.id === id);
        if (!found) throw new Error(`no control ${id}`);
        return found;
    }
    async open(command) {
        this.program.command(this.main.window, command);
        return until(`the dialog of ${command}`, 3, () => this.dialog);
    }
    async leave() {
        this.program.key(this.dialog.window, 27, 0);
        await until("the dialog is closed", 3, () => !this.dialog);
    }
    /** Fills in a dialog: a list's entry by its index, an edit's text, a check box's state. */
    fill(values) {
        for (const [id, value] of Object.entries(values)) {
            const control = this.control(Number(id));
            if (typeof value === "string") this.program.type(control.window, value);
            else if (control.items.length > 0) this.program.choose(control.window, value);
            else for (let i = 0; i < 3 && this.control(Number(id)).check !== value; ++i) this.program.click(control.window);
        }
    }
    press(id) {
        this.program.click(this.control(id).window);
    }
}
