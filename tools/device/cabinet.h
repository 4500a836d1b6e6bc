// SPDX-License-Identifier: MIT
// Install packages for Windows CE: a cabinet of uncompressed files. The first file lists the folders of the
// others and the entries of the start menu.
#pragma once

#include "little_endian.h"

namespace device
{

struct PackagedFile {
    std::string folder; // begins with one of the system's names, such as %CE1% for the folder of programs
    std::string name;
    Bytes content;
};

struct Package {
    std::string application, provider;
    std::vector<PackagedFile> files;
    size_t programFile; // this file gets a link in the start menu, with the application's name
};

// The cabinet's bytes; equal input gives equal bytes. Refuses names that are not ASCII, folders of more than
// one level below the system's, no files, and more than 999 of them.
Bytes MakeCabinet(const Package& package);

// Content of a link that starts a program with a command line, because a link of the package itself can have
// none. The path is the path on the device.
Bytes LinkContent(const std::string& programPath, const std::string& commandLine);

} // namespace device
