// SPDX-License-Identifier: MIT
/**
 * The program's dialogs and message boxes as HTML: the same controls at the same places, with a role and a name each.
 * The program has the valid state: the user's acts are sent to the program, and its changes are shown.
 */

import { nameFields } from "./names.js";

/** @import { Program } from "./messages.js" */

/** @typedef {{ x: number, y: number, width: number, height: number }} Place in the template's pixels */

/**
 * @typedef {object} Win A window of the program.
 * @property {number} handle
 * @property {number} parent of a control, otherwise 0
 * @property {string} kind
 * @property {number} id
 * @property {number} style
 * @property {string} text
 * @property {Place} place
 * @property {boolean} enabled
 * @property {boolean} visible
 * @property {number} state of a check
 * @property {string[]} items
 * @property {number} selection
 * @property {HTMLElement} element the outer element, at its place
 * @property {HTMLElement} field the element with its role, its name and the focus
 * @property {Win[]} children
 * @property {() => void} drawSky
 * @property {boolean} hasTyped true if its text was typed after an entry was chosen
 */

const VK_ENTER = 13;
const VK_ESCAPE = 27;
const IDOK = 1;
const IDCANCEL = 2;

// Style bits of the templates.
const BS_TYPE = 0xf;
const BS_DEFAULT = 1;
const BS_OWNERDRAW = 0xb;
const ES_MULTILINE = 4;
const ES_RIGHT = 2;
const ES_READONLY = 0x800;
const ES_NUMBER = 0x2000;
const SS_TYPE = 0x1f;
const SS_CENTER = 1;
const SS_NOPREFIX = 0x80;
const WS_GROUP = 0x20000;

/** @type {Map<number, Win>} */
export const windows = new Map();

/** @type {Program} */
let program;

/** Called when no dialog is left for the focus. */
let returnFocus = () => {};
let whenShown = () => {};

let focusIsTheirs = false; // the program moves the focus: nothing to report
let wantedFocus = 0; // the control that gets the focus when its dialog is shown
let radioGroups = 0;

/**
 * @param {Program} ofProgram
 * @param {() => void} whenClosed moves the focus after the last dialog
 * @param {() => void} afterShowing called after a dialog was put on top
 */
export function startDialogs(ofProgram, whenClosed, afterShowing) {
    for (const dialog of openDialogs()) dialog.close();
    for (const dialog of document.querySelectorAll("dialog")) dialog.remove();
    windows.clear();
    program = ofProgram;
    returnFocus = whenClosed;
    whenShown = afterShowing;
}

/** @returns {HTMLDialogElement[]} the dialogs on the screen, from the lowest to the topmost */
export function openDialogs() {
    return [...document.querySelectorAll("dialog")].filter((dialog) => dialog.open);
}

/** @param {string} text with an ampersand before the letter of a keyboard shortcut */
function caption(text) {
    return text.replace(/&(.)/g, "$1");
}

/**
 * @template {keyof HTMLElementTagNameMap} T
 * @param {T} tag
 * @param {string} classes
 * @param {string} [text]
 */
function make(tag, classes, text) {
    const element = document.createElement(tag);
    element.className = classes;
    if (text !== undefined) element.textContent = text;
    return element;
}

/** @param {number} value the template's pixels */
function length(value) {
    return `calc(var(--u) * ${value})`;
}

/** @param {Win} window */
function place(window) {
    const { x, y, width, height } = window.place;
    const { style } = window.element;
    if (window.kind === "dialog") {
        const client = /** @type {HTMLElement} */ (window.element.querySelector(".client"));
        client.style.width = length(width);
        client.style.height = length(height);
        // Scaled to the width of a narrow screen, with its content.
        style.setProperty("--u", innerWidth < 500 ? `calc((100vw - 2px) / ${width})` : "0.1rem");
        return;
    }
    style.left = length(x);
    style.top = length(y);
    style.width = length(width);
    // A list's height in the template is that of its open drop-down list.
    style.height = length(window.kind === "combo" || window.kind === "choice" ? 20 : height);
}

addEventListener("resize", () => {
    for (const window of windows.values()) if (window.kind === "dialog") place(window);
});

// ---- Making -------------------------------------------------------------------------------------------

/** @param {Win} window */
function makeDialog(window) {
    const dialog = make("dialog", "");
    const title = make("h2", "", window.text);
    title.id = `caption-${window.handle}`;
    const bar = make("div", "caption");
    const client = make("div", "client");
    const cross = make("button", "cross", "\u00d7");
    cross.type = "button";
    cross.setAttribute("aria-label", "Close dialog");
    cross.onclick = () => program.close(window.handle);
    bar.append(title);
    // The cross is last in tab order: the template's first field is first.
    dialog.append(bar, client, cross);
    dialog.setAttribute("aria-labelledby", title.id);
    dialog.addEventListener("cancel", (event) => {
        event.preventDefault();
        program.key(window.handle, VK_ESCAPE, 0);
    });
    dialog.addEventListener("keydown", (event) => dialogKey(window, event));
    dialog.addEventListener("focusin", (event) => {
        const control = controlOf(event.target);
        if (control && !focusIsTheirs) program.focused(control.handle);
    });
    // A browser may close it without a request to the page (a second Back on a telephone).
    dialog.addEventListener("close", () => {
        if (windows.has(window.handle) && window.visible) program.close(window.handle);
    });
    window.element = window.field = dialog;
    document.body.append(dialog);
}

/** @param {EventTarget | null} target */
function controlOf(target) {
    for (const window of windows.values())
        if (window.parent && target instanceof Node && window.element.contains(target)) return window;
    return undefined;
}

/**
 * @param {Win} window
 * @param {KeyboardEvent} event
 */
function dialogKey(window, event) {
    const isButton = event.target instanceof HTMLButtonElement;
    if (event.key === "Escape" || (event.key === "Enter" && !isButton)) {
        event.preventDefault();
        const control = controlOf(event.target);
        program.key(control ? control.handle : window.handle, event.key === "Enter" ? VK_ENTER : VK_ESCAPE, 0);
    }
}

/** @param {Win} window a button, or a coloured field that opens a colour chooser */
function makeButton(window) {
    if ((window.style & BS_TYPE) === BS_OWNERDRAW) return makeColour(window);
    const button = make("button", "control", caption(window.text));
    button.type = "button";
    button.classList.toggle("usual", (window.style & BS_TYPE) === BS_DEFAULT);
    button.onclick = () => program.click(window.handle);
    window.element = window.field = button;
}

/**
 * @param {Win} window
 * @param {string} radioGroup
 */
function makeTick(window, radioGroup) {
    const label = make("label", "control tick");
    const input = make("input", "");
    input.type = window.kind === "radio" ? "radio" : "checkbox";
    if (window.kind === "radio") input.name = radioGroup;
    input.onclick = () => program.click(window.handle);
    label.append(input, make("span", "", caption(window.text)));
    window.element = label;
    window.field = input;
}

/** @param {Win} window */
function makeEdit(window) {
    const isLong = (window.style & ES_MULTILINE) !== 0;
    const edit = make(isLong ? "textarea" : "input", "control");
    edit.value = window.text.replace(/\r\n/g, "\n");
    edit.readOnly = (window.style & ES_READONLY) !== 0;
    edit.autocomplete = "off";
    edit.spellcheck = false;
    edit.classList.toggle("right", (window.style & ES_RIGHT) !== 0);
    const onlyDigits = (window.style & ES_NUMBER) !== 0;
    if (onlyDigits) edit.inputMode = "numeric";
    edit.oninput = () => {
        if (onlyDigits && /\D/.test(edit.value)) edit.value = edit.value.replace(/\D/g, "");
        program.type(window.handle, edit.value.replace(/\r?\n/g, "\r\n"));
    };
    window.element = window.field = edit;
}

/** @param {Win} window a list that shows one entry */
function makeChoice(window) {
    const select = make("select", "control");
    select.onchange = () => program.choose(window.handle, Number(select.value));
    if (window.kind === "list") select.size = 2;
    window.element = window.field = select;
}

/** @param {Win} window a list whose text can also be typed: a field, with an arrow at its end that opens the list */
function makeCombo(window) {
    const box = make("div", "control combo");
    const input = make("input", "control typed");
    const list = make("datalist", "");
    const arrow = make("select", "control arrow");
    list.id = `list-${window.handle}`;
    input.setAttribute("list", list.id);
    input.autocomplete = "off";
    input.value = window.text;
    arrow.tabIndex = -1; // for touch only: in the field, keys open the list
    arrow.setAttribute("aria-hidden", "true");
    input.style.left = "0";
    input.style.top = "0";
    input.style.width = "calc(100% - 1.5em)";
    input.style.height = "100%";
    arrow.style.right = "0";
    arrow.style.top = "0";
    arrow.style.width = "1.5em";
    arrow.style.height = "100%";
    /** @param {number} index */
    const choose = (index) => {
        window.selection = index;
        window.hasTyped = false;
        input.value = window.items[index];
        arrow.value = String(index);
        program.choose(window.handle, index);
    };
    input.oninput = (event) => {
        const chosen = event instanceof InputEvent && event.inputType !== "insertReplacementText" && event.inputType;
        const index = window.items.indexOf(input.value);
        if (!chosen && index >= 0) return choose(index);
        window.hasTyped = true;
        arrow.selectedIndex = -1;
        program.type(window.handle, input.value);
    };
    input.onkeydown = (event) => {
        const step = { ArrowDown: 1, ArrowUp: -1 }[event.key];
        if (!step || event.altKey || !window.items.length) return;
        event.preventDefault();
        const from = window.hasTyped ? window.items.indexOf(input.value) : window.selection;
        choose(Math.min(Math.max(from + step, 0), window.items.length - 1));
    };
    arrow.onchange = () => choose(Number(arrow.value));
    box.append(input, arrow, list);
    window.element = box;
    window.field = input;
}

/** @param {Win} window */
function makeLabel(window) {
    const isPlain = window.id <= 0 || window.id === 0xffff;
    const text = window.style & SS_NOPREFIX ? window.text : caption(window.text);
    const label = make(isPlain ? "label" : "div", isPlain ? "control" : "control shown", text);
    label.classList.toggle("centre", (window.style & SS_TYPE) === SS_CENTER);
    window.element = window.field = label;
}

/** @param {Win} window */
function makeColour(window) {
    const button = make("button", "control colour");
    const picker = make("input", "picker");
    button.type = "button";
    picker.type = "color";
    picker.tabIndex = -1;
    picker.setAttribute("aria-hidden", "true");
    button.onclick = () => picker.click();
    picker.onchange = () => {
        program.picked(parseInt(picker.value.slice(1), 16));
        program.click(window.handle);
    };
    button.append(picker);
    window.element = window.field = button;
}

// ---- What the program shows ---------------------------------------------------------------------------

/**
 * @param {number} handle
 * @param {number} parent
 * @param {string} kind
 * @param {string} text
 * @returns {Win}
 */
function makeWin(handle, parent, kind, text) {
    const element = document.body;
    const drawSky = () => {};
    const place = { x: 0, y: 0, width: 0, height: 0 };
    const fresh = { id: 0, style: 0, place, enabled: true, visible: true, state: 0, items: [], selection: -1 };
    return { handle, parent, kind, text, element, field: element, children: [], hasTyped: false, drawSky, ...fresh };
}

/**
 * @param {number} handle
 * @param {number} parent
 * @param {string} kind
 * @param {number} id
 * @param {number} style
 * @param {Place} where
 * @param {string} text
 */
export function created(handle, parent, kind, id, style, where, text) {
    if (kind === "box") return; // showBox makes it
    const owner = windows.get(parent);
    const window = makeWin(handle, owner?.kind === "dialog" ? parent : 0, kind, text);
    Object.assign(window, { id, style, place: where });
    windows.set(handle, window);
    if (kind === "dialog") {
        makeDialog(window);
        // All of it arrives in one turn, and it is visible unless a message of that turn hides it.
        queueMicrotask(() => show(window));
    } else if (owner && owner.kind === "dialog") {
        if (kind === "radio" && style & WS_GROUP) ++radioGroups;
        if (kind === "button") makeButton(window);
        else if (kind === "check" || kind === "tristate" || kind === "radio")
            makeTick(window, `radio-${parent}-${radioGroups}`);
        else if (kind === "edit") makeEdit(window);
        else if (kind === "choice" || kind === "list") makeChoice(window);
        else if (kind === "combo") makeCombo(window);
        else makeLabel(window);
        window.field.id ||= `control-${handle}`;
        owner.children.push(window);
        owner.element.querySelector(".client")?.append(window.element);
    } else return;
    window.element.dataset.window = String(handle);
    window.element.dataset.control = String(id);
    place(window);
}

/**
 * @param {number} handle
 * @param {Place} where
 */
export function placed(handle, where) {
    const window = windows.get(handle);
    if (!window) return;
    window.place = where;
    if (window.kind !== "main") place(window);
}

/** @param {number} handle */
export function gone(handle) {
    const window = windows.get(handle);
    if (!window) return;
    windows.delete(handle);
    const { element } = window;
    if (window.kind === "main") return;
    if (!(element instanceof HTMLDialogElement)) return element.remove();
    if (element.open) element.close();
    element.remove();
    // Usually the browser returns the focus to the element that had it before.
    if (!openDialogs().length && document.activeElement === document.body) returnFocus();
}

/**
 * @param {number} handle
 * @param {string} text
 */
export function setText(handle, text) {
    const window = windows.get(handle);
    if (!window) return;
    window.text = text;
    const { field, element } = window;
    if (window.kind === "dialog") /** @type {HTMLElement} */ (element.querySelector("h2")).textContent = text;
    else if (field instanceof HTMLTextAreaElement || (field instanceof HTMLInputElement && !element.matches(".tick"))) {
        const shown = text.replace(/\r\n/g, "\n");
        if (field.value !== shown) field.value = shown;
    } else if (element.matches(".tick")) /** @type {HTMLElement} */ (element.querySelector("span")).textContent = text;
    else if (element.matches(".colour") || window.kind === "choice" || window.kind === "list") return;
    else if (window.kind !== "main") field.textContent = window.style & SS_NOPREFIX ? text : caption(text);
}

/**
 * @param {number} handle
 * @param {boolean} enabled
 */
export function setEnabled(handle, enabled) {
    const window = windows.get(handle);
    if (!window) return;
    window.enabled = enabled;
    if (!window.parent) return; // a modal dialog already disables everything below it
    for (const part of [window.field, ...window.element.querySelectorAll("select, input")])
        if ("disabled" in part) part.disabled = !enabled;
}

/**
 * @param {number} handle
 * @param {boolean} visible
 */
export function setVisible(handle, visible) {
    const window = windows.get(handle);
    if (!window || window.kind === "main") return;
    const { element } = window;
    if (!(element instanceof HTMLDialogElement)) {
        element.hidden = !visible;
        return;
    }
    window.visible = visible;
    if (visible) show(window);
    else if (element.open) element.close();
}

/**
 * Puts a dialog on the screen when all its content has arrived.
 * @param {Win} window
 */
function show(window) {
    const { element } = window;
    if (!(element instanceof HTMLDialogElement) || element.open || !window.visible || !windows.has(window.handle))
        return;
    nameFields(window);
    focusIsTheirs = true;
    element.showModal();
    const wanted = window.children.find((child) => child.handle === wantedFocus) ?? firstStop(window);
    wanted?.field.focus();
    if (wanted?.field instanceof HTMLInputElement) wanted.field.select();
    focusIsTheirs = false;
    window.drawSky();
    whenShown();
}

/** @param {Win} dialog */
function firstStop(dialog) {
    return dialog.children.find((child) => child.enabled && child.kind !== "label" && child.kind !== "group");
}

/**
 * @param {number} handle
 * @param {number} state
 */
export function setCheck(handle, state) {
    const window = windows.get(handle);
    if (!window || !(window.field instanceof HTMLInputElement)) return;
    window.state = state;
    window.field.checked = state === 1;
    window.field.indeterminate = state === 2;
}

/**
 * The entry as the page shows it; null: not shown. Ports are shown without the program's names for them.
 * @param {string} item
 */
function entry(item) {
    const port = /^COM\d:(?: (.*))?$/.exec(item);
    return port ? (port[1] ?? null) : item;
}

/**
 * @param {number} handle
 * @param {string[]} items
 */
export function setItems(handle, items) {
    const window = windows.get(handle);
    if (!window) return;
    window.items = items;
    const select = window.element.matches("select") ? window.element : window.element.querySelector("select");
    if (!(select instanceof HTMLSelectElement)) return;
    const options = items.flatMap((item, index) => {
        const shown = entry(item);
        return shown === null ? [] : [new Option(shown, String(index))];
    });
    select.replaceChildren(...options);
    window.element.querySelector("datalist")?.replaceChildren(...items.map((item) => new Option(item, item)));
    setSelection(handle, window.selection);
}

/**
 * @param {number} handle
 * @param {number} index
 */
export function setSelection(handle, index) {
    const window = windows.get(handle);
    if (!window) return;
    window.selection = index;
    const select = window.element.matches("select") ? window.element : window.element.querySelector("select");
    if (select instanceof HTMLSelectElement) {
        select.value = String(index);
        if (index < 0) select.selectedIndex = -1;
    }
    if (window.kind === "combo" && index >= 0 && index < window.items.length) {
        window.hasTyped = false;
        /** @type {HTMLInputElement} */ (window.field).value = window.items[index];
    }
}

/**
 * @param {number} handle
 * @param {number} characters
 */
export function setLimit(handle, characters) {
    const field = windows.get(handle)?.field;
    if (field instanceof HTMLInputElement || field instanceof HTMLTextAreaElement)
        if (characters > 0) field.maxLength = characters;
        else field.removeAttribute("maxlength");
}

/**
 * @param {number} handle
 * @param {number} style
 */
export function setStyle(handle, style) {
    const window = windows.get(handle);
    if (!window) return;
    window.style = style;
    if (window.kind === "button") window.field.classList.toggle("usual", (style & BS_TYPE) === BS_DEFAULT);
    if (window.kind === "edit")
        /** @type {HTMLInputElement} */ (window.field).readOnly = (style & ES_READONLY) !== 0;
}

/**
 * @param {number} handle
 * @param {number} colour 0xRRGGBB, or -1
 */
export function setColour(handle, colour) {
    const window = windows.get(handle);
    if (!window) return;
    const code = `#${colour.toString(16).padStart(6, "0")}`;
    const { element } = window;
    // A grey box is the usual form of a read-only text; the dark and the light colour scheme have their own colours for
    // it.
    if (!element.matches(".colour")) return;
    element.style.backgroundColor = colour < 0 ? "" : code;
    const picker = element.querySelector("input");
    if (picker && colour >= 0) picker.value = code;
}

/** @param {number} handle */
export function setFocus(handle) {
    const window = windows.get(handle);
    if (!window || !window.parent) return;
    wantedFocus = handle;
    focusIsTheirs = true;
    window.field.focus();
    focusIsTheirs = false;
}

/**
 * A message box.
 * @param {number} handle
 * @param {string} title
 * @param {string} text
 * @param {string[]} buttons "NUMBER CAPTION"
 * @param {number} usual
 */
export function showBox(handle, title, text, buttons, usual) {
    const dialog = make("dialog", "box");
    dialog.setAttribute("role", "alertdialog");
    const bar = make("div", "caption");
    const heading = make("h2", "", title);
    const body = make("p", "", text.replace(/\r\n?/g, "\n"));
    const row = make("div", "buttons");
    heading.id = `caption-${handle}`;
    body.id = `text-${handle}`;
    dialog.setAttribute("aria-labelledby", heading.id);
    dialog.setAttribute("aria-describedby", body.id);
    const answers = buttons.map((button) => Number(button.slice(0, button.indexOf(" "))));
    const escape = answers.includes(IDCANCEL) ? IDCANCEL : answers.length === 1 ? answers[0] : IDOK;
    buttons.forEach((button, index) => {
        const element = make("button", "", caption(button.slice(button.indexOf(" ") + 1)));
        element.type = "button";
        element.autofocus = answers[index] === usual;
        element.classList.toggle("usual", answers[index] === usual);
        element.onclick = () => program.answer(handle, answers[index]);
        row.append(element);
    });
    dialog.addEventListener("keydown", (event) => {
        if (event.key !== "Escape") return;
        event.preventDefault();
        program.answer(handle, escape);
    });
    dialog.addEventListener("cancel", (event) => event.preventDefault());
    dialog.addEventListener("close", () => {
        if (windows.has(handle)) program.answer(handle, escape);
    });
    bar.append(heading);
    dialog.append(bar, body, row);
    document.body.append(dialog);
    const window = makeWin(handle, 0, "box", text);
    window.element = window.field = dialog;
    dialog.dataset.window = String(handle);
    windows.set(handle, window);
    dialog.showModal();
    /** @type {HTMLElement | null} */ (dialog.querySelector(".usual"))?.focus();
}

// ---- The sky ------------------------------------------------------------------------------------------

/**
 * Draws the sky plot into its dialog, in the screen's resolution.
 * @param {number} handle
 * @param {Place} where
 * @param {string[]} shapes
 * @param {string} values
 */
export function showSky(handle, where, shapes, values) {
    const window = windows.get(handle);
    const client = window?.element.querySelector(".client");
    if (!window || !client) return;
    window.drawSky = () => drawSky(client, where, shapes, values);
    window.drawSky();
}

/**
 * @param {Element} client
 * @param {Place} where
 * @param {string[]} shapes
 * @param {string} values
 */
function drawSky(client, where, shapes, values) {
    let canvas = client.querySelector("canvas");
    if (!canvas) {
        canvas = make("canvas", "");
        canvas.setAttribute("role", "img");
        canvas.setAttribute("aria-label", "Sky");
        const words = make("p", "");
        words.id = "sky-values";
        words.hidden = true;
        canvas.setAttribute("aria-describedby", words.id);
        client.append(canvas, words);
    }
    /** @type {HTMLElement} */ (canvas.nextElementSibling).textContent = values;
    canvas.style.left = length(where.x);
    canvas.style.top = length(where.y);
    canvas.style.width = length(where.width);
    canvas.style.height = length(where.height);
    const scale = (canvas.clientWidth / where.width) * devicePixelRatio;
    if (!scale) return; // not on the screen yet
    canvas.width = Math.round(where.width * scale);
    canvas.height = Math.round(where.height * scale);
    const context = canvas.getContext("2d");
    if (!context) return;
    context.scale(scale, scale);
    context.translate(-where.x, -where.y);
    context.textBaseline = "top";
    context.font = "8px Liberation Sans, Arial, sans-serif";
    const ink = getComputedStyle(client).color;
    for (const shape of shapes) {
        const [kind, a, b, c, d] = shape.split(" ", 5);
        const [left, top, right, bottom] = [a, b, c, d].map(Number);
        if (kind === "Text") {
            context.fillStyle = ink;
            context.fillText(shape.split(" ").slice(3).join(" "), left, top);
            continue;
        }
        context.beginPath();
        if (kind === "Ellipse")
            context.ellipse(
                (left + right) / 2,
                (top + bottom) / 2,
                Math.abs(right - left) / 2,
                Math.abs(bottom - top) / 2,
                0,
                0,
                7,
            );
        else context.rect(left, top, right - left, bottom - top);
        context.fillStyle = getComputedStyle(document.documentElement).getPropertyValue("--paper");
        context.strokeStyle = ink;
        context.fill();
        context.stroke();
    }
}
