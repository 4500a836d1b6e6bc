// SPDX-License-Identifier: MIT
/**
 * Keeps the page usable without a network. Files from the network are newer and are preferred; without a network, the
 * files of the last visit are used.
 */

const CacheName = "toravane";
const Files = [
    "./",
    "index.html",
    "style.css",
    "main.js",
    "dialogs.js",
    "names.js",
    "menu.js",
    "serial.js",
    "settings.js",
    "ids.js",
    "messages.js",
    "program.js",
    "toravane.js",
    "toravane.wasm",
    "icon.svg",
    "manifest.webmanifest",
];

const worker = /** @type {ServiceWorkerGlobalScope} */ (/** @type {unknown} */ (self));

worker.addEventListener("install", (event) => {
    event.waitUntil(
        caches
            .open(CacheName)
            .then((cache) => cache.addAll(Files))
            .then(() => worker.skipWaiting()),
    );
});

worker.addEventListener("activate", (event) => event.waitUntil(worker.clients.claim()));

/** @param {Request} request */
async function answer(request) {
    const cache = await caches.open(CacheName);
    try {
        const fresh = await fetch(request);
        if (fresh.ok) await cache.put(request, fresh.clone());
        return fresh;
    } catch (error) {
        const kept = await cache.match(request, { ignoreSearch: true });
        if (kept) return kept;
        throw error;
    }
}

worker.addEventListener("fetch", (event) => {
    const { request } = event;
    if (request.method === "GET" && new URL(request.url).origin === worker.location.origin)
        event.respondWith(answer(request));
});
