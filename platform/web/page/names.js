// SPDX-License-Identifier: MIT
/**
 * The accessible name of a field: its label in the template, otherwise one of these.
 * A label is before its field in tab order, beside or above it. A label before several buttons, boxes or values
 * is the heading of a group.
 */

import * as ids from "./ids.js";

/** @import { Win } from "./dialogs.js" */

/** @type {[first: number, name: string][]} of the fields in a channel's row of Graph Options */
const ChannelFields = [
    [ids.CONTROL_GRAPH_VALUE_ZERO, "Zero"],
    [ids.CONTROL_GRAPH_VALUE_MIN, "Value Min"],
    [ids.CONTROL_GRAPH_VALUE_MAX, "Value Max"],
    [ids.CONTROL_GRAPH_PIXEL_MIN, "Pixel Min"],
    [ids.CONTROL_GRAPH_PIXEL_MAX, "Pixel Max"],
    [ids.CONTROL_GRAPH_COLOR, "Colour"],
    [ids.CONTROL_GRAPH_VISIBLE, "Visible"],
];
const Channels = 10;

/** @type {Record<number, string>} */
const OwnNames = {
    [ids.CONTROL_NMEA_GREY_BOX]: "Receiver messages",
    [ids.CONTROL_DEVELOPMENT_COMMAND]: "Command",
    [ids.CONTROL_COM_STATUS]: "Statistics",
};

/** @param {Win} window */
const isHeading = (window) => window.field instanceof HTMLLabelElement && /\p{L}/u.test(window.text);
/** @param {Win | undefined} window */
const isValue = (window) => !!window && window.element.matches(".shown");
/** @param {Win | undefined} window */
const isTick = (window) => !!window && window.element.matches(".tick");
/** @param {Win | undefined} window */
const isButton = (window) => window?.kind === "button";
/** @param {Win | undefined} window */
const isField = (window) => !!window && (isValue(window) || window.element.matches("input, select, textarea, .combo"));

/**
 * True if both are in one line.
 * @param {Win} label
 * @param {Win} control
 */
function isBeside({ place: label }, { place: control }) {
    return label.y < control.y + control.height && control.y < label.y + label.height;
}

/**
 * @param {Win} field
 * @param {string} name
 */
function nameSo(field, name) {
    field.field.setAttribute("aria-label", name);
}

/** @param {Win} dialog */
function nameChannels(dialog) {
    const byId = new Map(dialog.children.map((child) => [child.id, child]));
    for (let channel = 0; channel < Channels; ++channel) {
        const label = byId.get(ids.CONTROL_GRAPH_NAME + channel);
        for (const [first, name] of ChannelFields) {
            const field = byId.get(first + channel);
            if (label && field) nameSo(field, `${label.text} ${name}`);
        }
        if (label) {
            label.element.removeAttribute("role");
            label.element.classList.remove("shown");
        }
    }
}

/**
 * Puts consecutive controls into a group.
 * @param {Win} heading
 * @param {Win[]} members
 */
function group(heading, members) {
    if (!members.length) return;
    const box = document.createElement("div");
    box.setAttribute("role", "group");
    heading.element.id ||= `control-${heading.handle}`;
    box.setAttribute("aria-labelledby", heading.element.id);
    members[0].element.before(box);
    box.append(...members.map((member) => member.element));
}

/**
 * Gives each field of a dialog that has just been made a role and a name.
 * @param {Win} dialog
 */
export function nameFields(dialog) {
    const { children } = dialog;
    for (const child of children)
        if (isValue(child)) {
            child.field.setAttribute("role", "status");
            // Read only on request: times change each second.
            child.field.setAttribute("aria-live", "off");
        }
    if (children.some((child) => child.id === ids.CONTROL_GRAPH_VALUE_ZERO)) nameChannels(dialog);

    for (let i = 0; i < children.length; ++i) {
        const label = children[i];
        const own = OwnNames[label.id];
        if (own) nameSo(label, own);
        if (!isHeading(label)) continue;
        const next = children[i + 1];
        if (!next || next.field.ariaLabel) continue;
        const values = runFrom(children, i + 1, isValue);
        if (values.length > 1) {
            values.forEach((value, index) => nameSo(value, `${label.text} ${index + 1}`));
            group(label, values);
        } else if (isField(next)) {
            if (isValue(next)) next.field.setAttribute("aria-labelledby", label.field.id);
            else /** @type {HTMLLabelElement} */ (label.field).htmlFor = next.field.id;
        } else if (isTick(next) && isBeside(label, next)) group(label, runFrom(children, i + 1, isTick));
        else if (isButton(next) && isBeside(label, next)) group(label, runFrom(children, i + 1, isButton));
        else if (isHeading(next)) group(label, pairsFrom(children, i + 1));
    }
}

/**
 * @param {Win[]} children
 * @param {number} first
 * @param {(window: Win | undefined) => boolean} belongs
 */
function runFrom(children, first, belongs) {
    let end = first;
    while (belongs(children[end])) ++end;
    return children.slice(first, end);
}

/**
 * Labels with their fields, all of the first field's kind.
 * @param {Win[]} children
 * @param {number} first
 */
function pairsFrom(children, first) {
    let end = first;
    const kind = children[first + 1]?.kind;
    while (children[end] && isHeading(children[end]) && isField(children[end + 1]) && children[end + 1].kind === kind)
        end += 2;
    return children.slice(first, end).filter((child) => !child.field.ariaLabel);
}
