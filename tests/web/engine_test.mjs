// SPDX-License-Identifier: MIT
// The program of the page without a browser.
import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { existsSync, mkdtempSync, readFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { test } from "node:test";
import { inflateSync } from "node:zlib";
import { Engine, frame, ids, pause, sentence, until } from "./engine.mjs";

const Gga = sentence("GPGGA,120000.000,4722.6140,N,00832.5020,E,1,08,1.0,455.0,M,48.0,M,,0000");
const ColourOfHdop = ids.CONTROL_GRAPH_COLOR + 1;
const Rate9600 = 3; // its index in the list of rates

/** The program with a receiver at port 1 of the page. */
async function atPort(bytes) {
    const engine = await Engine.load();
    engine.program.ports([1], ["USB 067b:2303"]);
    engine.program.setting("CommPortIdx", 1);
    engine.program.setting("BaudrateIdx", Rate9600);
    engine.program.start();
    await until("the port is set", 5, () => engine.rates.length > 0 && engine.receiver?.port === 1);
    await pause(2200); // drivers need this time before the first byte
    engine.receive(bytes);
    await until("the receiver is recognised", 3, () => engine.receiver.protocol !== "-");
    return engine;
}

test("the receiver in the page streams at once", async () => {
    const engine = await Engine.load();
    const start = performance.now();
    engine.program.start();
    await until("a position", 1.5, () => engine.lines.some((line) => line.includes("Latitude: 59.21")));
    assert.ok(performance.now() - start < 1500);
    assert.equal(engine.lines.length, 19);
    assert.deepEqual(engine.receiver, { port: 0, rate: 4800, protocol: "NMEA", searching: false });
    assert.equal(engine.main.text, "Toravane");
    assert.deepEqual(engine.menu.slice(0, 4), [
        `0 ${ids.COMMAND_ABOUT} About`, `0 ${ids.COMMAND_COMMUNICATION} Com`, "0 0 NMEA",
        `1 ${ids.DIALOG_NMEA_SET_SERIAL_PORT} Set Serial Port (Switch to SiRF)`]);
    assert.deepEqual(engine.settings, {}); // the user has not chosen this port
    assert.equal(engine.dialog, undefined);
    assert.deepEqual(engine.opened, []);

    engine.program.key(engine.main.window, 38, 0);
    const chart = await until("the chart", 3, () => engine.chart);
    assert.deepEqual([chart.width, chart.height, chart.pixels.length], [240, 268, 240 * 268 * 4]);
    assert.match(chart.values, /SVsInFix \d.*Altitude -?\d/);
    engine.program.stop();
});

test("the receiver in the page takes commands", async () => {
    const engine = await Engine.load();
    engine.program.start();
    await until("a position", 2, () => engine.lines.some((line) => line.includes("Latitude")));
    await engine.open(ids.DIALOG_NMEA_SET_SERIAL_PORT);
    engine.fill({ [ids.CONTROL_TO_SIRF_BAUDRATE]: 5, [ids.CONTROL_SERIAL_PROTOCOL]: 0 }); // 38400, SiRF
    engine.press(ids.CONTROL_SERIAL_SET);
    const follow = () => engine.control(ids.CONTROL_SERIAL_FOLLOW);
    const other = await until("the program can follow", 5, () => follow().enabled && follow());
    await pause(500); // the receiver must read all of it first
    engine.program.click(other.window);
    await until("SiRF binary", 8, () => engine.receiver.protocol === "SiRF" && engine.receiver.rate === 38400);
    await engine.leave();
    engine.program.stop();
});

// For each dialog: the command of its menu item, the entries, the button, the sentence that is sent.
const NmeaCommands = [
    [ids.DIALOG_NMEA_NAVIGATION_INITIALIZATION,
        { [ids.CONTROL_NAVINIT_COLD_START]: 1 }, ids.CONTROL_NAVINIT_SET, "PSRF101,0,0,0,0,0,0,12,4"],
    [ids.DIALOG_NMEA_SET_MESSAGE_RATE,
        { [ids.CONTROL_NMEA_RATE_MESSAGE]: 2, [ids.CONTROL_NMEA_RATE_SECONDS]: "5" },
        ids.CONTROL_NMEA_RATE_SET, "PSRF103,2,0,5,1"],
    [ids.DIALOG_NMEA_DEVELOPMENT_DATA,
        { [ids.CONTROL_DEVELOPMENT_COMMAND]: "PSRF105,1" }, ids.CONTROL_DEVELOPMENT_SET, "PSRF105,1"],
    [ids.DIALOG_NMEA_SELECT_DATUM, { [ids.CONTROL_DATUM]: 1 }, ids.CONTROL_DATUM_SET, "PSRF106,178"],
];

test("the NMEA dialogs open and send", async () => {
    const engine = await atPort(Gga);
    assert.equal(engine.sent, "$PSRF101,0,0,0,0,0,0,12,1*15\r\n"); // the hot start that asks for the start-up text
    for (const [command, values, button, sent] of NmeaCommands) {
        const dialog = await engine.open(command);
        assert.equal(engine.main.enabled, false, dialog.text);
        engine.fill(values);
        engine.sent = "";
        engine.press(button);
        await until(`${sent} is sent`, 3, () => engine.sent.startsWith(sentence(sent)));
        await engine.leave();
        assert.equal(engine.main.enabled, true);
    }
    assert.deepEqual(engine.settings.CommPortIdx, 1);
    engine.program.close(engine.main.window);
    await until("the end", 3, () => engine.exitCode === 0);
    assert.deepEqual(engine.closed, [1]);
    assert.equal(engine.windows.size, 0);
});

// For each dialog: its command, the poll that it sends when it opens; for some, entries, button, and the sent payload.
const SirfCommands = [
    [ids.DIALOG_SIRF_ADVANCED_POWER_MANAGEMENT, "9800"],
    [ids.DIALOG_SIRF_INITIALIZE_DATA_SOURCE, "A880"],
    [ids.DIALOG_SIRF_DGPS_SOURCE, "A885"],
    [ids.DIALOG_SIRF_MODE_CONTROL, "A888"],
    [ids.DIALOG_SIRF_DOP_MASK, "A889"],
    [ids.DIALOG_SIRF_DGPS_MODE, "A88A"],
    [ids.DIALOG_SIRF_ELEVATION_MASK, "A88B",
        { [ids.CONTROL_ELEVATION_TRACKING]: "0.0", [ids.CONTROL_ELEVATION_NAVIGATION]: "10.5" },
        ids.CONTROL_ELEVATION_SET, "8B00000069"],
    [ids.DIALOG_SIRF_POWER_MASK, "A88C",
        { [ids.CONTROL_POWER_TRACKING]: "0", [ids.CONTROL_POWER_NAVIGATION]: "20" }, ids.CONTROL_POWER_SET, "8C0014"],
    [ids.DIALOG_SIRF_STATIC_NAVIGATION, "A88F",
        { [ids.CONTROL_STATIC_NAVIGATION]: 1 }, ids.CONTROL_STATIC_NAVIGATION_SET, "8F01"],
    [ids.DIALOG_SIRF_TRICKLE_POWER, "A897"],
    [ids.DIALOG_SIRF_LOW_POWER, "9800"],
    [ids.DIALOG_SIRF_POLL_SOFTWARE_VERSION, "8400"],
];

test("the SiRF dialogs open, poll and send", async () => {
    const engine = await atPort(frame("0b88")); // an acknowledgement
    assert.equal(engine.receiver.protocol, "SiRF");
    for (const [command, poll, values, button, set] of SirfCommands) {
        engine.sent = "";
        await engine.open(command);
        await until(`${poll} is polled by ${command}`, 3, () => engine.sent === frame(poll));
        if (set) {
            engine.sent = "";
            engine.fill(values);
            engine.press(button);
            await until(`${set} is sent`, 3, () => engine.sent.startsWith(frame(set)));
        }
        await engine.leave();
    }
    for (const command of [ids.DIALOG_SIRF_SWITCH_TO_NMEA, ids.DIALOG_SIRF_SET_MESSAGE_RATE, ids.DIALOG_SIRF_SBAS,
        ids.COMMAND_GRAPH, ids.COMMAND_ABOUT]) { // that ask nothing
        const dialog = await engine.open(command);
        assert.ok([...engine.windows.values()].filter((window) => window.parent === dialog.window).length > 1);
        await engine.leave();
    }
    engine.program.stop();
});

test("a box waits for its answer", async () => {
    const engine = await atPort(frame("0b88"));
    await engine.open(ids.DIALOG_SIRF_POWER_MASK);
    engine.fill({ [ids.CONTROL_POWER_TRACKING]: "28", [ids.CONTROL_POWER_NAVIGATION]: "51" });
    engine.press(ids.CONTROL_POWER_SET);
    const box = await until("the box", 3, () => engine.box);
    assert.deepEqual([box.caption, box.text, box.buttons], ["Navigation Mask", "Range 0-50 dBHz", ["1 OK"]]);
    assert.equal(engine.dialog.enabled, false);
    engine.program.answer(box.window, 1);
    await until("it is gone", 3, () => !engine.box && engine.dialog.enabled);
    engine.program.stop();
});

test("colours are chosen, and the sky is drawn", async () => {
    const engine = await Engine.load();
    engine.program.start();
    await until("a position", 2, () => engine.lines.some((line) => line.includes("Latitude")));
    await engine.open(ids.COMMAND_GRAPH);
    const field = await until("the colour of HDOP", 3, () => engine.control(ColourOfHdop).colour && engine.control(ColourOfHdop));
    assert.equal(field.colour, 0x00c0c0);
    engine.program.click(field.window); // without a colour that was picked before
    engine.program.picked(0x123456);
    engine.program.click(field.window);
    await until("the field's colour", 3, () => engine.control(ColourOfHdop).colour === 0x123456);
    await engine.leave();

    await engine.open(ids.DIALOG_SIRF_SBAS);
    const plot = await until("the sky", 5, () => engine.plot);
    assert.deepEqual(plot.shapes.slice(0, 3), ["Ellipse 40 72 140 172", "Ellipse 65 97 115 147", "Text 81 66  S "]);
    assert.equal(plot.window, engine.dialog.window);
    assert.match(plot.values, /above the horizon|elevation/);
    engine.program.stop();
});

/** A page that searches for the rate of serial port 1, after its own receiver was open. */
async function searching() {
    const engine = await Engine.load();
    engine.program.ports([1], ["Serial port 1"]);
    engine.program.start();
    await until("the page's receiver", 3, () => engine.receiver?.protocol === "NMEA");
    engine.program.search(1);
    return engine;
}

test("the rate is searched, and a lost port is not an endless wait", async () => {
    const engine = await searching();
    await until("4800 is tried", 12, () => engine.rates.at(-1) === 4800 && engine.receiver.searching);
    engine.receive(Gga);
    const found = await until("the end of the search", 5, () => engine.found);
    assert.deepEqual(found, { port: 1, rate: 4800, protocol: "NMEA" });
    engine.program.portLost(1);
    engine.program.connect(0, 4800);
    await until("the page's receiver again", 6, () => engine.receiver.port === 0 && engine.receiver.protocol === "NMEA");
    engine.portError = 5;
    engine.program.connect(1, 4800);
    const box = await until("the refused port", 3, () => engine.box);
    assert.equal(box.caption, "Cannot open COM1:");
    engine.program.answer(box.window, 1);
    engine.program.stop();
});

test("a search that finds nothing gives way to what was open before", async () => {
    const engine = await searching();
    const found = await until("the end of the search", 60, () => engine.found);
    assert.deepEqual(found, { port: 1, rate: 0, protocol: "-" });
    await until("the page's receiver again", 6, () => engine.receiver.port === 0 && engine.receiver.protocol === "NMEA");
    assert.deepEqual([engine.settings.CommPortIdx, engine.settings.BaudrateIdx], [undefined, undefined]);
    engine.program.stop();
});

test("a silent line wakes nobody up", async (context) => {
    const engine = await atPort(Gga);
    await pause(500);
    const timers = context.mock.method(globalThis, "setTimeout");
    await pause(2000);
    assert.equal(timers.mock.callCount(), 1); // the pause's own
    timers.mock.restore();
    engine.receive(sentence("GPVTG,231.8,T,,M,10.0,N,18.5,K,D"));
    await until("it is still read", 3, () => engine.lines.some((line) => line.startsWith(" Speed: 5.15 m/s")));
    engine.program.stop();
});

test("Communication names the ports, and a log is downloaded", async () => {
    const engine = await atPort(Gga);
    await engine.open(ids.COMMAND_COMMUNICATION);
    const names = engine.control(ids.CONTROL_COM_PORT).items;
    assert.equal(names.length, 10);
    assert.deepEqual(names.slice(0, 3), ["COM0: Receiver in this page", "COM1: USB 067b:2303", "COM2:"]);
    assert.equal(engine.control(ids.CONTROL_COM_PORT).selection, 1);
    assert.equal(engine.control(ids.CONTROL_COM_BAUDRATE).selection, Rate9600);
    const buttons = [ids.CONTROL_COM_OPEN, ids.CONTROL_COM_CLOSE, ids.CONTROL_COM_LOG_OPEN, ids.CONTROL_COM_LOG_CLOSE];
    assert.deepEqual(buttons.map((id) => engine.control(id).enabled), [false, true, true, false]);
    engine.press(ids.CONTROL_COM_LOG_OPEN);
    await until("the log is open", 3, () => engine.control(ids.CONTROL_COM_LOG_CLOSE).enabled);
    engine.receive(Gga + Gga);
    await pause(200);
    engine.press(ids.CONTROL_COM_LOG_CLOSE);
    const { name, text } = await until("the download", 3, () => engine.downloads[0]);
    assert.match(name, /^\d{12}\.txt$/);
    assert.equal(text, Gga + Gga);

    engine.press(ids.CONTROL_COM_CLOSE);
    await until("the port is closed", 3, () => engine.receiver.port === -1 && engine.closed.length === 1);
    await until("it can be opened again", 3, () => engine.control(ids.CONTROL_COM_OPEN).enabled);
    engine.fill({ [ids.CONTROL_COM_PORT]: 0, [ids.CONTROL_COM_BAUDRATE]: 2 });
    engine.press(ids.CONTROL_COM_OPEN);
    await until("the receiver in the page", 6, () => engine.receiver.protocol === "NMEA" && engine.receiver.port === 0);
    await until("the setting", 3, () => engine.settings.CommPortIdx === 0);
    engine.program.stop();
});

const replay = new URL("../../build/native/toravane-replay", import.meta.url).pathname;

/** The pixels of a picture with three bytes each, as RGBA. */
function readPng(file) {
    const bytes = readFileSync(file);
    const parts = [];
    for (let place = 8; place < bytes.length; ) {
        const length = bytes.readUInt32BE(place);
        if (bytes.toString("latin1", place + 4, place + 8) === "IDAT")
            parts.push(bytes.subarray(place + 8, place + 8 + length));
        place += length + 12;
    }
    const [width, height] = [bytes.readUInt32BE(16), bytes.readUInt32BE(20)];
    const data = inflateSync(Buffer.concat(parts));
    const row = width * 3;
    const at = (x, y) => (x < 0 || y < 0 ? 0 : data[y * (row + 1) + 1 + x]);
    const near = (left, up, corner) => {
        const [a, b, c] = [up - corner, left - corner, left + up - 2 * corner].map(Math.abs);
        return a <= b && a <= c ? left : b <= c ? up : corner;
    };
    const pixels = [];
    for (let y = 0; y < height; ++y)
        for (let x = 0; x < row; ++x) {
            const [left, up, corner] = [at(x - 3, y), at(x, y - 1), at(x < 3 ? -1 : x - 3, y - 1)];
            const filter = data[y * (row + 1)];
            const add = [0, left, up, (left + up) >> 1, near(left, up, corner)][filter];
            data[y * (row + 1) + 1 + x] += add;
            pixels.push(at(x, y));
            if (x % 3 === 2) pixels.push(255);
        }
    return { width, height, pixels };
}

for (const name of ["cold-start.txt", "cold-start.srf", "noisy-line.txt"])
    test(`${name} plays at once and draws what the replay tool draws`, { skip: !existsSync(replay) }, async () => {
        const log = new URL(`../data/${name}`, import.meta.url).pathname;
        const picture = join(mkdtempSync(join(tmpdir(), "toravane-")), "chart.png");
        const printed = execFileSync(replay, ["--page", "--chart", picture, "--size", "300x200", log], { encoding: "utf8" });
        const expected = readPng(picture);
        for (const chart of [false, true]) {
            const engine = await Engine.load();
            const bytes = readFileSync(log);
            engine.program.log(new Uint8Array(bytes), 0);
            engine.program.play(0, true);
            engine.program.size(300, 200);
            engine.program.start();
            await until("the window", 3, () => engine.menu.length > 0);
            if (chart) engine.program.key(engine.main.window, 38, 0);
            engine.program.play(0, false);
            await until("the log is played", 20, () => engine.playback?.position === bytes.length);
            assert.deepEqual(engine.settings, {}); // the log's port is not kept
            await pause(300);
            if (!chart) assert.deepEqual(engine.lines, printed.split("\n").slice(0, 19));
            else {
                assert.deepEqual([engine.chart.width, engine.chart.height], [300, 200]);
                assert.ok(Buffer.from(engine.chart.pixels).equals(Buffer.from(expected.pixels)));
            }
            engine.program.stop();
        }
    });

test("a log plays with the time of its fixes, and pauses", async () => {
    const fixes = Array.from({ length: 40 }, (_, i) => Gga.replace("120000", String(120000 + i))
        .replace(/\$(.*)\*..\r\n/, (_all, body) => sentence(body)));
    const log = new Uint8Array(Buffer.from(fixes.join(""), "latin1"));
    const engine = await Engine.load();
    engine.program.log(log, 10);
    engine.program.start();
    await until("the first fixes", 3, () => engine.playback?.position > fixes[0].length * 3);
    await pause(1000); // ten seconds of the log
    const after = engine.playback.position / fixes[0].length;
    assert.ok(after > 8 && after < 25, `${after} fixes`);
    engine.program.play(10, true);
    await pause(300);
    const held = engine.playback.position;
    await pause(500);
    assert.equal(engine.playback.position, held);
    engine.program.play(0, false);
    await until("the end", 3, () => engine.playback.position === log.length);
    engine.program.stop();
});
