// SPDX-License-Identifier: MIT
// A newly started system with a newly started program, as often as needed in one process.
#pragma once

// Resets everything to its start: the headless system and each part of the program. No reader thread may be
// running.
void StartAfresh();

// Closes the port and the log, if they are open.
void CloseEverything();
