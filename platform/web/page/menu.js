// SPDX-License-Identifier: MIT
/** The program's menu as a menu bar, with the usual keys: arrows, Enter, Escape and first letters. */

/**
 * @typedef {object} Item
 * @property {number} command 0 opens a menu of its own
 * @property {HTMLElement} element
 */

const bar = /** @type {HTMLElement} */ (document.getElementById("menubar"));

/** @type {HTMLElement | null} */
let lastUsed = null;

/** @returns {HTMLElement | null} the last used item of the bar */
export function lastMenuItem() {
    return lastUsed;
}

/** @param {HTMLElement} list of items */
function itemsOf(list) {
    return /** @type {HTMLElement[]} */ ([
        ...list.querySelectorAll(":scope > [role=menuitem], :scope > div > [role=menuitem]"),
    ]);
}

/** @param {HTMLElement} item of the bar */
function menuOf(item) {
    const menu = item.nextElementSibling;
    return menu instanceof HTMLElement && menu.role === "menu" ? menu : null;
}

function closeMenus() {
    for (const item of itemsOf(bar)) {
        const menu = menuOf(item);
        if (!menu) continue;
        item.setAttribute("aria-expanded", "false");
        menu.hidden = true;
    }
}

/**
 * @param {HTMLElement} item
 * @param {"first" | "last" | "none"} focus
 */
function openMenu(item, focus) {
    const menu = menuOf(item);
    closeMenus();
    if (!menu) return;
    item.setAttribute("aria-expanded", "true");
    menu.hidden = false;
    const over = menu.getBoundingClientRect().right - document.documentElement.clientWidth;
    menu.style.left = over > 0 ? `${-over - 2}px` : "0";
    if (focus !== "none")
        itemsOf(menu)
            .at(focus === "first" ? 0 : -1)
            ?.focus();
}

/** @param {HTMLElement} item becomes the item that the Tab key reaches */
function focusInBar(item) {
    for (const other of itemsOf(bar)) other.tabIndex = other === item ? 0 : -1;
    item.focus();
}

/**
 * @param {string[]} entries "DEPTH COMMAND CAPTION" each
 * @param {(command: number) => void} choose
 */
export function showMenu(entries, choose) {
    bar.replaceChildren();
    /** @type {HTMLElement | null} */
    let menu = null;
    for (const entry of entries) {
        const [depth, command] = entry.split(" ", 2);
        const text = entry.slice(depth.length + command.length + 2).replace(/&(.)/g, "$1");
        const item = document.createElement("div");
        item.setAttribute("role", "menuitem");
        item.tabIndex = -1;
        item.textContent = text;
        item.dataset.command = command;
        if (depth === "0") {
            const cell = document.createElement("div");
            cell.setAttribute("role", "none");
            cell.append(item);
            bar.append(cell);
            menu = null;
            if (command === "0") {
                menu = document.createElement("div");
                menu.setAttribute("role", "menu");
                menu.setAttribute("aria-label", text);
                menu.hidden = true;
                item.setAttribute("aria-haspopup", "menu");
                item.setAttribute("aria-expanded", "false");
                cell.append(menu);
            }
        } else menu?.append(item);
        item.onclick = () => {
            const barItem = menuOf(item) ? item : (item.closest("[role=menu]")?.previousElementSibling ?? item);
            if (menuOf(item)) return item.ariaExpanded === "true" ? closeMenus() : openMenu(item, "none");
            closeMenus();
            lastUsed = /** @type {HTMLElement} */ (barItem);
            focusInBar(lastUsed);
            choose(Number(command));
        };
    }
    const first = itemsOf(bar)[0];
    if (first) first.tabIndex = 0;
}

export function focusMenu() {
    const items = itemsOf(bar);
    (items.find((item) => item.tabIndex === 0) ?? items[0])?.focus();
}

/** @param {KeyboardEvent} event */
function keyPressed(event) {
    const item = /** @type {HTMLElement} */ (event.target);
    const menu = /** @type {HTMLElement | null} */ (item.closest("[role=menu]"));
    const barItem = /** @type {HTMLElement} */ (menu ? menu.previousElementSibling : item);
    const list = itemsOf(menu ?? bar);
    const barList = itemsOf(bar);
    /** @param {number} step */
    const along = (step) => {
        const target = barList[(barList.indexOf(barItem) + step + barList.length) % barList.length];
        const wasOpen = barItem.ariaExpanded === "true";
        closeMenus();
        focusInBar(target);
        if (wasOpen && menuOf(target)) openMenu(target, menu ? "first" : "none");
    };
    /** @param {number} step */
    const within = (step) => list[(list.indexOf(item) + step + list.length) % list.length].focus();
    switch (event.key) {
        case "ArrowRight":
            along(1);
            break;
        case "ArrowLeft":
            along(-1);
            break;
        case "ArrowDown":
            if (menu) within(1);
            else openMenu(item, "first");
            break;
        case "ArrowUp":
            if (menu) within(-1);
            else openMenu(item, "last");
            break;
        case "Home":
            list[0].focus();
            break;
        case "End":
            list[list.length - 1].focus();
            break;
        case "Enter":
        case " ":
            if (!menu && menuOf(item)) openMenu(item, "first");
            else item.click();
            break;
        case "Escape":
            closeMenus();
            focusInBar(barItem);
            break;
        case "Tab":
            closeMenus();
            return;
        default: {
            if (event.key.length !== 1 || event.ctrlKey || event.altKey || event.metaKey) return;
            const letter = event.key.toLowerCase();
            const from = list.indexOf(item) + 1;
            const found = [...list.slice(from), ...list.slice(0, from)].find((other) =>
                other.textContent.toLowerCase().startsWith(letter),
            );
            found?.focus();
        }
    }
    event.preventDefault();
    event.stopPropagation();
}

bar.addEventListener("keydown", keyPressed);
addEventListener("pointerdown", (event) => {
    if (event.target instanceof Node && !bar.contains(event.target)) closeMenus();
});
bar.addEventListener("focusout", (event) => {
    if (event.relatedTarget instanceof Node && !bar.contains(event.relatedTarget)) closeMenus();
});
