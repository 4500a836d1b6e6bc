// SPDX-License-Identifier: MIT
/** The page: starts the program, shows its output, passes it the user's acts and the browser's data. */

import * as dialogs from "./dialogs.js";
import { focusMenu, lastMenuItem, showMenu } from "./menu.js";
import { loadProgram } from "./program.js";
import * as serial from "./serial.js";
import * as settings from "./settings.js";

/** @import { Page, Program } from "./messages.js" */

const ChartRows = 268; // height of the chart's bands at the start
const ChartColumns = { least: 240, most: 900 };
const PortInPage = 0;
const PortOfLog = 9;

/**
 * @template {HTMLElement} [T=HTMLElement]
 * @param {string} id
 */
const element = (id) => /** @type {T} */ (document.getElementById(id));

/** @type {(id: string) => HTMLButtonElement} */
const button = element;
/** @type {(id: string) => HTMLInputElement} */
const input = element;

const textPage = element("text-page");
const chartView = element("chart-view");
const chart = /** @type {HTMLCanvasElement} */ (document.getElementById("chart"));
const progress = /** @type {HTMLProgressElement} */ (document.getElementById("progress"));

/** @type {Program} */
let program;
let mainWindow = 0;
/** @type {{ name: string, bytes: Uint8Array<ArrayBuffer>, isOver: boolean } | null} the log that is played */
let log = null;
let foundText = ""; // the result of a search
let unheardText = ""; // the same if it found nothing
let isHeld = false; // the searched port could not be opened
let hasEnded = false;
const portsFound = serial.findPorts();

// ---- Notices of the page itself ----------------------------------------------------------------------

/** @param {string} text */
function status(text) {
    const line = element("receiver");
    if (line.textContent !== text) line.textContent = text;
}

/** Puts the notices into the topmost dialog, because everything outside it cannot be used. */
function placeNotices() {
    const notices = element("notices");
    const place = dialogs.openDialogs().at(-1) ?? document.body;
    if (notices.parentElement !== place) place.append(notices);
}

/**
 * An alert that stays until it is dismissed, or until the next one.
 * @param {string} text empty: removes the alert
 */
function notice(text) {
    const notices = element("notices");
    notices.replaceChildren();
    if (!text) return;
    placeNotices();
    const box = document.createElement("div");
    const words = document.createElement("p");
    const dismiss = document.createElement("button");
    box.className = "notice";
    box.setAttribute("role", "alert");
    dismiss.type = "button";
    dismiss.textContent = "Dismiss";
    dismiss.onclick = () => notice("");
    words.textContent = text;
    box.append(words, dismiss);
    notices.append(box);
}

/**
 * @param {number} number
 * @param {"held" | "lost"} kind
 */
function portBroken(number, kind) {
    const name = serial.labelOf(number);
    isHeld = kind === "held";
    const text = isHeld
        ? `${name} cannot be opened: another program or page holds it, or this user may not use it. ` +
          `Close what else uses it; on Linux the user must be in the group that owns the device (mostly "dialout").`
        : `${name} was pulled out. Plug it in again, then open it in Com, or connect it anew.`;
    unheardText = text;
    status(text);
    notice(text);
}

/**
 * @param {string} name
 * @param {BlobPart} content
 */
function download(name, content) {
    const link = document.createElement("a");
    link.href = URL.createObjectURL(new Blob([content]));
    link.download = name;
    link.click();
    setTimeout(() => URL.revokeObjectURL(link.href), 60000);
}

// ---- Requests of the program -------------------------------------------------------------------------

/** @param {boolean} isChart */
function showView(isChart) {
    if (chartView.hidden !== isChart) return;
    const hadFocus = (isChart ? textPage : chartView).contains(document.activeElement);
    textPage.hidden = isChart;
    chartView.hidden = !isChart;
    button("toggle").textContent = isChart ? "Show the text page" : "Show the chart";
    if (hadFocus) (isChart ? chartView : textPage).focus();
}

/** Screen pixels per chart pixel: a whole number, so that the chart stays sharp. */
function pointsEach() {
    return Math.max(1, Math.round(devicePixelRatio));
}

/** @type {Page} */
const page = {
    created(window, parent, _owner, kind, id, style, x, y, width, height, text) {
        if (kind === "main") mainWindow = window;
        dialogs.created(window, parent, kind, id, style, { x, y, width, height }, text);
    },
    placed: (window, x, y, width, height) => dialogs.placed(window, { x, y, width, height }),
    gone(window) {
        const notices = element("notices");
        if (dialogs.windows.get(window)?.element.contains(notices)) document.body.append(notices);
        dialogs.gone(window);
        placeNotices();
    },
    text: dialogs.setText,
    enabled: dialogs.setEnabled,
    visible: dialogs.setVisible,
    check: dialogs.setCheck,
    items: dialogs.setItems,
    selection: dialogs.setSelection,
    limit: dialogs.setLimit,
    style: dialogs.setStyle,
    colour: dialogs.setColour,
    focus: dialogs.setFocus,
    menu(_window, entries) {
        showMenu(entries, (command) => program.command(mainWindow, command));
    },
    box(window, _owner, caption, text, buttons, usual) {
        dialogs.showBox(window, caption, text, buttons, usual);
        placeNotices();
    },
    page(lines) {
        showView(false);
        while (textPage.childElementCount < lines.length) {
            const line = document.createElement("div");
            line.className = "line";
            textPage.append(line);
        }
        lines.forEach((line, index) => {
            const shown = textPage.children[index];
            if (shown.textContent !== line) shown.textContent = line;
        });
    },
    chart(width, height, pixels, values) {
        showView(true);
        if (chart.width !== width || chart.height !== height) {
            chart.width = width;
            chart.height = height;
        }
        chart.style.width = `${(width * pointsEach()) / devicePixelRatio}px`;
        chart.getContext("2d")?.putImageData(new ImageData(pixels, width, height), 0, 0);
        element("chart-values").textContent = values;
    },
    plot(window, x, y, width, height, shapes, values) {
        dialogs.showSky(window, { x, y, width, height }, shapes, values);
    },
    portOpen: serial.openPort,
    portRate: serial.openPort,
    portWrite: serial.writePort,
    portClose: serial.closePort,
    receiver(port, rate, protocol, searching) {
        const name = serial.labelOf(port);
        const speaks = protocol === "-" ? "nothing recognised yet" : protocol;
        if (port < 0) return status(unheardText || "No receiver is connected.");
        if (!searching) unheardText = "";
        if (searching) status(`Searching on ${name}: listening at ${rate} baud.`);
        else if (port === PortInPage)
            status(
                `The receiver in this page streams: ${speaks}, ${rate} baud. It is software; nothing is plugged in.`,
            );
        else if (port === PortOfLog) status(`The log ${log?.name ?? ""} is played: ${speaks}.`);
        else status(`${name}: ${speaks}, ${rate} baud. ${foundText}`.trim());
    },
    found(port, rate, protocol) {
        const name = serial.labelOf(port);
        if (rate) {
            foundText = `The search found it.`;
            status(`${name}: ${protocol}, ${rate} baud. ${foundText}`);
        } else if (!isHeld) {
            unheardText =
                `No receiver was heard on ${name} at any rate. Is it switched on, and is this its port? ` +
                `A receiver that saves power may need a second try.`;
            status(unheardText);
            notice(unheardText);
        }
    },
    download: (name, bytes) => download(name, bytes),
    setting: settings.store,
    settingGone: settings.forget,
    playback(position, length) {
        progress.hidden = false;
        progress.max = length;
        progress.value = position;
        if (log) log.isOver = position >= length;
        button("pause").disabled = position >= length;
    },
    ended() {
        hasEnded = true;
        for (const part of document.querySelectorAll("header > div, #view, .actions, #playback"))
            /** @type {HTMLElement} */ (part).hidden = true;
        void serial.closePorts();
        status("The program has ended, and its port is closed. Reload the page to start it again.");
        const again = document.createElement("button");
        again.type = "button";
        again.textContent = "Reload the page";
        again.onclick = () => location.reload();
        document.querySelector("main")?.append(again);
        again.focus();
    },
};

// ---- Start --------------------------------------------------------------------------------------------

/** Columns of the chart for the available width. */
function chartColumns() {
    const room = Math.floor((element("view").parentElement?.clientWidth ?? 0) - 34);
    const columns = Math.floor((room * devicePixelRatio) / pointsEach());
    return Math.min(Math.max(columns, ChartColumns.least), ChartColumns.most);
}

function speed() {
    return Number(/** @type {HTMLInputElement} */ (document.querySelector("[name=speed]:checked")).value);
}

function isPaused() {
    return button("pause").ariaPressed === "true";
}

/** @param {boolean} paused */
function setPaused(paused) {
    button("pause").setAttribute("aria-pressed", String(paused));
}

/**
 * Starts the program again, in place of the running one.
 * @param {(program: Program) => void} [prepare] called before it starts
 */
async function start(prepare) {
    program?.stop();
    serial.servePorts(null, portBroken);
    await serial.closePorts();
    setPaused(false);
    foundText = unheardText = "";
    showView(false);
    textPage.replaceChildren();
    progress.hidden = !log;
    button("close-log").hidden = !log;
    button("pause").disabled = !log;
    [program] = await Promise.all([loadProgram(page), portsFound]);
    const returnFocus = () => {
        if (!hasEnded) (lastMenuItem() ?? (chartView.hidden ? textPage : chartView)).focus();
    };
    dialogs.startDialogs(program, returnFocus, placeNotices);
    serial.servePorts(program, portBroken);
    for (const [name, value] of Object.entries(settings.storedSettings())) program.setting(name, value);
    chart.width = chartColumns();
    chart.height = ChartRows;
    program.size(chart.width, chart.height);
    if (log) program.log(log.bytes, speed());
    prepare?.(program);
    program.start();
    Object.assign(window, { toravane: { program, page, windows: dialogs.windows } }); // for the browser's console
}

/** @param {File} file */
async function openLog(file) {
    notice("");
    log = { name: file.name, bytes: new Uint8Array(await file.arrayBuffer()), isOver: false };
    await start();
}

async function connect() {
    notice(serial.obstacle());
    if (serial.obstacle()) return;
    let number;
    try {
        number = await serial.choosePort();
    } catch {
        notice("The browser refused to let a port be chosen. Its settings for this page may forbid serial ports.");
        return;
    }
    if (!number) return;
    if (log) {
        log = null;
        await start();
    }
    foundText = unheardText = "";
    isHeld = false;
    program.search(number);
}

/** @param {File} file */
async function importFrom(file) {
    if (!settings.importSettings(await file.text())) {
        notice(`${file.name} holds no settings of this program. Choose a file that "Export settings" has written.`);
        return;
    }
    notice("");
    await start();
}

/**
 * @param {string} buttonId
 * @param {string} inputId
 * @param {(file: File) => Promise<void>} take
 */
function chooseFile(buttonId, inputId, take) {
    const chooser = input(inputId);
    button(buttonId).onclick = () => chooser.click();
    chooser.onchange = () => {
        const file = chooser.files?.[0];
        if (file) void take(file);
        chooser.value = "";
    };
}

/** @param {KeyboardEvent} event */
function keyPressed(event) {
    if (hasEnded || dialogs.openDialogs().length || event.ctrlKey || event.altKey || event.metaKey) return;
    if (event.key === "F10") {
        event.preventDefault();
        focusMenu();
        return;
    }
    const isInView = event.target === document.body || element("view").contains(/** @type {Node} */ (event.target));
    if (!isInView || ["Tab", "Shift", "Escape"].includes(event.key) || /^F\d/.test(event.key) || event.repeat) return;
    event.preventDefault();
    program.key(mainWindow, event.keyCode, 0);
}

button("connect").onclick = () => void connect();
button("toggle").onclick = () => program.key(mainWindow, 32, 0);
button("export").onclick = () => download("toravane-settings.json", settings.exportSettings());
button("close-log").onclick = () => {
    log = null;
    void start();
};
button("pause").onclick = () => {
    setPaused(!isPaused());
    program.play(speed(), isPaused());
};
chooseFile("open-log", "log-file", openLog);
chooseFile("import", "settings-file", importFrom);
element("playback").onchange = () => {
    if (log?.isOver) void start();
    else if (log) program.play(speed(), isPaused());
};
addEventListener("keydown", keyPressed);
for (const kind of ["dragenter", "dragover"])
    addEventListener(kind, (event) => {
        event.preventDefault();
        document.body.classList.add("dropping");
    });
addEventListener("dragleave", (event) => {
    if (!event.relatedTarget) document.body.classList.remove("dropping");
});
addEventListener("drop", (event) => {
    event.preventDefault();
    document.body.classList.remove("dropping");
    const file = event.dataTransfer?.files[0];
    if (file) void openLog(file);
});
if ("serviceWorker" in navigator && isSecureContext)
    addEventListener("load", () => void navigator.serviceWorker.register("sw.js").catch(() => {})); // needed without a network only

showView(true);
showView(false);
await start();
