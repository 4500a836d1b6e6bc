// SPDX-License-Identifier: MIT
// Differences between the operating systems; one source file for each system.
#pragma once

// To be called first. Standard input and output then transfer every byte unchanged, and a closed standard
// stream keeps its number, so that no file opened later gets it. Writing to it still fails.
void PrepareStandardStreams();
