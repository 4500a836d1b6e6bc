// SPDX-License-Identifier: MIT
/** The program's stored numbers, in the browser's storage, each under its name. */

/** @param {unknown} value */
function isNumber(value) {
    return typeof value === "number" && Number.isInteger(value) && value >= -(2 ** 31) && value < 2 ** 31;
}

/** @returns {Record<string, number>} */
export function storedSettings() {
    /** @type {Record<string, number>} */
    const settings = {};
    for (let i = 0; i < localStorage.length; ++i) {
        const name = localStorage.key(i) ?? "";
        const text = localStorage.getItem(name) ?? "";
        if (/^-?\d{1,10}$/.test(text) && isNumber(Number(text))) settings[name] = Number(text);
    }
    return settings;
}

/**
 * @param {string} name
 * @param {number} value
 */
export function store(name, value) {
    localStorage.setItem(name, String(value));
}

/** @param {string} name */
export function forget(name) {
    localStorage.removeItem(name);
}

/**
 * Replaces all stored settings by those of a file.
 * @param {string} text
 * @returns {boolean} false if it is not such a file; then nothing is changed
 */
export function importSettings(text) {
    let settings;
    try {
        settings = JSON.parse(text);
    } catch {
        return false;
    }
    if (typeof settings !== "object" || settings === null || Array.isArray(settings)) return false;
    const entries = Object.entries(settings);
    if (!entries.every(([name, value]) => /^\w{1,63}$/.test(name) && isNumber(value))) return false;
    Object.keys(storedSettings()).forEach(forget);
    for (const [name, value] of entries) store(name, value);
    return true;
}

/** @returns {string} */
export function exportSettings() {
    const settings = storedSettings();
    const names = Object.keys(settings).sort();
    return JSON.stringify(Object.fromEntries(names.map((name) => [name, settings[name]])), null, 4) + "\n";
}
