// SPDX-License-Identifier: MIT
// The module that the compiler makes of the program.
export interface ToravaneModule {
    HEAPU8: Uint8Array;
    /** Room for a message of so many bytes. */
    _toravane_buffer(length: number): number;
    /** Takes the message in that room. */
    _toravane_receive(): void;
    /** Lets the program run until all of it waits. */
    _toravane_step(): void;
    /** Milliseconds until it wants to run again; -1: only after a message. */
    _toravane_pause(): number;
}
export default function createModule(options: {
    receive: (message: Uint8Array) => void;
    [option: string]: unknown;
}): Promise<ToravaneModule>;
