// SPDX-License-Identifier: MIT
import js from "@eslint/js";
import globals from "globals";

export default [
    js.configs.recommended,
    {
        files: ["imports.js"],
        languageOptions: {
            globals: { mergeInto: "writable", LibraryManager: "writable", Module: "readonly", HEAPU8: "readonly" },
        },
    },
    {
        files: ["page/**/*.js", "program.js"],
        languageOptions: { globals: { ...globals.browser, ...globals.serviceworker } },
        linterOptions: { reportUnusedDisableDirectives: "error" },
        rules: {
            eqeqeq: "error",
            "no-implicit-globals": "error",
            "no-restricted-properties": [
                "error",
                // A receiver's texts may contain any character: they are shown only as texts.
                { property: "innerHTML" },
                { property: "outerHTML" },
                { property: "insertAdjacentHTML" },
            ],
            "no-var": "error",
            "prefer-const": "error",
        },
    },
];
