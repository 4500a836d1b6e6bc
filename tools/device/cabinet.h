// SPDX-License-Identifier: MIT
// Install packages for Windows CE: a cabinet of uncompressed files, of which the first lists where the others
// go and what the start menu shows.
#pragma once

#include "little_endian.h"

namespace device
{

struct PackagedFile {
    std::string folder; // begins with one of the system's names, as %CE1% for the folder of programs
    std::string name;
    Bytes content;
};

struct Package {
    std::string application, provider;
    std::vector<PackagedFile> files;
    size_t programFile; // the one that gets a link in the start menu, by the application's name
};

// The cabinet's bytes, the same every time. Refuses names that are not ASCII, folders of more than one level
// below the system's, no files, and more than 999 of them.
Bytes MakeCabinet(const Package& package);

// Content of a link that starts a program with a command line: a link in the package itself can have none.
// The path is as the device will have it.
Bytes LinkContent(const std::string& programPath, const std::string& commandLine);

} // namespace device
