// SPDX-License-Identifier: MIT
/** The browser's serial ports, by the program's numbers for them. */

/** @import { Program } from "./messages.js" */

const FirstNumber = 1; // the lower number is the receiver in the page, the higher one a log
const LastNumber = 8;
const StoredNumbers = "Ports"; // the number of each granted port, so that it gets the same number at the next visit
const BufferSize = 16384; // bytes: more than a second at the highest rate

const DoesNotExist = 2;
const HeldOrNotPermitted = 5;
const DoesNotWork = 31;

/** @type {Map<number, Line>} */
const lines = new Map();
/** @type {Program | null} */
let program = null;
/** @type {(number: number, kind: "held" | "lost") => void} */
let complain = () => {};

/** A port: its tasks are carried out one after the other. */
class Line {
    /**
     * @param {number} number
     * @param {SerialPort} port
     */
    constructor(number, port) {
        this.number = number;
        this.port = port;
        this.isLost = false;
        this.isClosing = false;
        /** @type {Promise<unknown>} */
        this.last = Promise.resolve();
        /** @type {ReadableStreamDefaultReader<Uint8Array> | null} */
        this.reader = null;
        /** @type {Promise<void> | null} */
        this.reading = null;
    }

    /**
     * @template T
     * @param {() => Promise<T>} task
     * @returns {Promise<T>}
     */
    after(task) {
        const done = this.last.then(task);
        this.last = done.catch(() => {});
        return done;
    }

    /** @param {number} rate */
    async open(rate) {
        await this.shut();
        await this.port.open({ baudRate: rate, bufferSize: BufferSize });
        this.isLost = this.isClosing = false;
        this.reading = this.read();
    }

    /**
     * Passes on received bytes until the port is closed or lost. After a broken character or a full buffer, only the
     * stream ends, and a new one begins.
     */
    async read() {
        while (this.port.readable && !this.isLost) {
            const reader = this.port.readable.getReader();
            this.reader = reader;
            let isOver = false;
            try {
                for (;;) {
                    const { value, done } = await reader.read();
                    isOver = done;
                    if (done) break;
                    program?.bytes(this.number, new Uint8Array(value));
                }
            } catch (error) {
                if (error instanceof DOMException && error.name === "NetworkError") this.lose();
            } finally {
                reader.releaseLock();
                this.reader = null;
            }
            if (this.isClosing) return;
            if (isOver) break;
        }
        this.lose(); // the stream of a removed device ends, or is not renewed
    }

    /** @param {Uint8Array<ArrayBuffer>} bytes */
    async write(bytes) {
        if (!this.port.writable) return;
        const writer = this.port.writable.getWriter();
        try {
            await writer.write(bytes);
        } catch (error) {
            if (error instanceof DOMException && error.name === "NetworkError") this.lose();
        } finally {
            writer.releaseLock();
        }
    }

    async shut() {
        if (!this.port.readable && !this.port.writable) return;
        this.isClosing = true;
        try {
            await this.reader?.cancel();
            await this.reading;
            await this.port.close();
        } catch {
            // a removed device cannot be closed
        }
    }

    lose() {
        if (this.isLost) return;
        this.isLost = true;
        program?.portLost(this.number);
        complain(this.number, "lost");
    }
}

/** @param {SerialPort} port */
function usbName(port) {
    const { usbVendorId, usbProductId } = port.getInfo();
    /** @param {number} value */
    const hex = (value) => value.toString(16).padStart(4, "0");
    return usbVendorId === undefined ? "" : `USB ${hex(usbVendorId)}:${hex(usbProductId ?? 0)}`;
}

/** @param {number} number */
export function labelOf(number) {
    const line = lines.get(number);
    return (line && usbName(line.port)) || `Serial port ${number}`;
}

/** @returns {Record<string, string>} the name of each number's port at the last visit */
function storedNumbers() {
    try {
        return JSON.parse(localStorage.getItem(StoredNumbers) ?? "{}") ?? {};
    } catch {
        return {};
    }
}

/**
 * Gives a port its number: the previous number of a port with this name, otherwise a free one.
 * @param {SerialPort} port
 * @returns {number} 0 if there are too many
 */
function numberOf(port) {
    for (const [number, line] of lines) if (line.port === port) return number;
    const stored = storedNumbers();
    const name = usbName(port);
    const free = [];
    for (let number = FirstNumber; number <= LastNumber; ++number) if (!lines.has(number)) free.push(number);
    const number =
        free.find((candidate) => stored[candidate] === name) ??
        free.find((candidate) => !(candidate in stored)) ??
        free[0] ??
        0;
    if (!number) return 0;
    lines.set(number, new Line(number, port));
    localStorage.setItem(StoredNumbers, JSON.stringify({ ...stored, [number]: name }));
    return number;
}

function announce() {
    const numbers = [...lines.keys()].sort();
    program?.ports(numbers, numbers.map(labelOf));
}

/** @returns {string} the reason why this page cannot use serial ports, empty if it can */
export function obstacle() {
    if ("serial" in navigator) return "";
    if (!isSecureContext)
        return "This page did not come over a secure connection, so the browser gives it no serial ports. Open it by https, or from this computer itself (127.0.0.1).";
    return "This browser cannot reach serial ports. Open the page in Chrome, Edge, Opera or Firefox on a computer, or in Chrome on Android.";
}

/** Finds the ports to which the user gave access at an earlier visit. */
export async function findPorts() {
    if (obstacle()) return;
    navigator.serial.addEventListener("disconnect", (event) => {
        for (const [number, line] of lines)
            if (line.port === event.target) {
                const wasOpen = line.port.readable !== null || line.reading !== null;
                if (wasOpen) line.lose();
                lines.delete(number);
            }
        announce();
    });
    navigator.serial.addEventListener("connect", (event) => {
        numberOf(/** @type {SerialPort} */ (/** @type {unknown} */ (event.target)));
        announce();
    });
    try {
        for (const port of await navigator.serial.getPorts()) numberOf(port);
    } catch {
        // the page may not use ports; a request for one shows the reason
    }
}

/**
 * Lets the user choose a port in the browser's own chooser.
 * @returns {Promise<number>} its number; 0: cancelled
 */
export async function choosePort() {
    try {
        const number = numberOf(await navigator.serial.requestPort());
        announce();
        return number;
    } catch (error) {
        if (error instanceof DOMException && error.name === "NotFoundError") return 0;
        throw error;
    }
}

/**
 * From now on the ports belong to this program.
 * @param {Program | null} newProgram
 * @param {(number: number, kind: "held" | "lost") => void} whenBroken
 */
export function servePorts(newProgram, whenBroken) {
    program = newProgram;
    complain = whenBroken;
    announce();
}

/**
 * @param {number} number
 * @param {number} rate
 */
export async function openPort(number, rate) {
    const line = lines.get(number);
    const asker = program;
    if (!line) return asker?.portResult(number, DoesNotExist);
    let error = 0;
    try {
        await line.after(() => line.open(rate));
    } catch (reason) {
        const isHeld = reason instanceof DOMException && reason.name === "NetworkError";
        error = isHeld ? HeldOrNotPermitted : DoesNotWork;
        if (isHeld) complain(number, "held");
    }
    asker?.portResult(number, error);
}

/**
 * @param {number} number
 * @param {Uint8Array<ArrayBuffer>} bytes
 */
export function writePort(number, bytes) {
    const line = lines.get(number);
    line?.after(() => line.write(bytes));
}

/** @param {number} number */
export function closePort(number) {
    const line = lines.get(number);
    return line?.after(() => line.shut()) ?? Promise.resolve();
}

/** Closes all ports, for a program that is started again. */
export async function closePorts() {
    await Promise.all([...lines.keys()].map(closePort));
}
