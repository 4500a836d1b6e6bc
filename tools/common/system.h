// SPDX-License-Identifier: MIT
// Where systems differ for the tools; each has a source of its own.
#pragma once

// To be called first. Standard input and output pass every byte as it is, and a standard stream that was
// closed keeps its number, so that no file that is opened later takes it. What is written to it fails, as it
// would have before.
void PrepareStandardStreams();
