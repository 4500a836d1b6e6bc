// SPDX-License-Identifier: MIT
// A freshly started system with a freshly started program, as often as wanted in one process.
#pragma once

// Everything back to the start: the headless system and each part of the program. No reader thread may run.
void StartAfresh();

// Closes the port and the log, if they are open.
void CloseEverything();
