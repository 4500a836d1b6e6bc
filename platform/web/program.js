// SPDX-License-Identifier: MIT
// Loads the program and runs it: each message of the page is one call of the program, each message of the program is a
// call of a method of the page. encoding.h describes the form of a message.
import createModule from "./toravane.js";
import { toPage, toProgram } from "./messages.js";

/** @import { Page, Program } from "./messages.js" */
/** @typedef {number | boolean | string | string[] | number[] | Uint8Array} Value */

/** Reads the fields of a message from the program. */
class Reader {
    /** @param {Uint8Array} bytes */
    constructor(bytes) {
        this.view = new DataView(bytes.buffer, bytes.byteOffset, bytes.byteLength);
        this.place = 0;
    }
    number() {
        this.place += 4;
        return this.view.getInt32(this.place - 4, true);
    }
    bytes() {
        const count = this.number();
        const start = this.view.byteOffset + this.place;
        this.place += (count + 3) & ~3;
        return this.view.buffer.slice(start, start + count);
    }
    string() {
        const count = this.number();
        let text = "";
        for (let i = 0; i < count; ++i) text += String.fromCharCode(this.view.getUint16(this.place + 2 * i, true));
        this.place += (2 * count + 3) & ~3;
        return text;
    }
    /**
     * @template T
     * @param {() => T} read
     */
    list(read) {
        return Array.from({ length: this.number() }, read);
    }
    /**
     * @param {string} type a letter of messages.js
     * @returns {Value | Uint8ClampedArray}
     */
    field(type) {
        switch (type) {
            case "n":
                return this.number();
            case "b":
                return this.number() !== 0;
            case "s":
                return this.string();
            case "t":
                return this.list(() => this.string());
            case "m":
                return this.list(() => this.number());
            case "p":
                return new Uint8ClampedArray(this.bytes());
            default:
                return new Uint8Array(this.bytes());
        }
    }
}

/**
 * A message to the program.
 * @param {number} number
 * @param {string} types
 * @param {Value[]} values
 */
function encode(number, types, values) {
    /** @type {Uint8Array[]} */
    const parts = [];
    let length = 0;
    /** @param {Uint8Array} part */
    const put = (part) => {
        parts.push(part);
        length += (part.byteLength + 3) & ~3;
    };
    /** @param {number} value */
    const putNumber = (value) => put(new Uint8Array(Int32Array.of(value).buffer));
    /** @param {string} text */
    const putString = (text) => {
        putNumber(text.length);
        put(new Uint8Array(Uint16Array.from({ length: text.length }, (_, i) => text.charCodeAt(i)).buffer));
    };
    putNumber(number);
    values.forEach((value, i) => {
        const type = types[i];
        if (typeof value === "string") putString(value);
        else if (typeof value !== "object") putNumber(Number(value));
        else {
            putNumber(value.length);
            if (value instanceof Uint8Array) put(value);
            else if (type === "t") value.forEach((text) => putString(String(text)));
            else value.forEach((item) => putNumber(Number(item)));
        }
    });
    const message = new Uint8Array(length);
    let place = 0;
    for (const part of parts) {
        message.set(part, place);
        place += (part.byteLength + 3) & ~3;
    }
    return message;
}

/**
 * Loads a new instance of the program, which does nothing yet.
 * @param {Page} page
 * @param {object} [options] for the loader: wasmBinary, locateFile
 * @returns {Promise<Program>}
 */
export async function loadProgram(page, options = {}) {
    let running = false;
    let stopped = false;
    /** @type {ReturnType<typeof setTimeout> | undefined} */
    let timer;
    /** @type {Uint8Array[]} */
    const waiting = [];

    /** @param {Uint8Array} bytes */
    const receive = (bytes) => {
        const reader = new Reader(bytes);
        const [name, types] = toPage[reader.number()];
        const values = Array.from(types, (type) => reader.field(type));
        try {
            /** @type {any} */ (page)[name](...values);
        } catch (error) {
            reportLater(error); // an error in the page must not end the program
        }
    };
    const module = await createModule({ ...options, receive });

    const run = () => {
        if (running || stopped) return;
        running = true;
        try {
            clearTimeout(timer);
            do {
                for (const message of waiting.splice(0)) {
                    const place = module._toravane_buffer(message.length);
                    module.HEAPU8.set(message, place);
                    module._toravane_receive();
                }
                module._toravane_step();
            } while (waiting.length > 0 && !stopped);
            const pause = module._toravane_pause();
            if (pause >= 0 && !stopped) timer = setTimeout(run, pause);
        } catch (error) {
            stopped = true;
            throw error;
        } finally {
            running = false;
        }
    };
    /** @type {Record<string, (...values: Value[]) => void>} */
    const program = {
        stop: () => {
            stopped = true;
            clearTimeout(timer);
        },
    };
    toProgram.forEach(([name, types], number) => {
        program[name] = (...values) => {
            waiting.push(encode(number, types, values));
            run();
        };
    });
    return /** @type {Program} */ (/** @type {unknown} */ (program));
}

/** @param {unknown} error */
function reportLater(error) {
    setTimeout(() => {
        throw error;
    });
}
