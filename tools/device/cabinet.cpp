// SPDX-License-Identifier: MIT
#include "cabinet.h"

#include <algorithm>
#include <cctype>

namespace device
{

namespace
{

constexpr uint32_t StrongArm = 2577; // the processor that packages for devices with any ARM name
constexpr uint32_t OldestSystem[] = {3, 0}, NewestSystem[] = {5, 99};
constexpr uint32_t ControlHeaderBytes = 100;
constexpr uint16_t StartMenuPrograms = 11, LinkToFile = 1; // %CE11%
constexpr size_t MostFiles = 999, BlockBytes = 32768;
constexpr uint16_t Date = (2008 - 1980) << 9 | 1 << 5 | 1, ReadableByAll = 0x20; // archive attribute

void AppendText(Bytes& bytes, const std::string& text)
{
    for (const char c : text) {
        if (c < ' ' || c > '~') throw Refusal("a name is not plain ASCII: " + text);
        bytes.push_back(static_cast<uint8_t>(c));
    }
    bytes.push_back(0);
}

uint16_t Size16(size_t size)
{
    if (size > UINT16_MAX) throw Refusal("too much for an install package");
    return static_cast<uint16_t>(size);
}

// ---- The control file ---------------------------------------------------------------------------------

// Texts and folders are numbered from 1.
template <typename T> uint16_t NumberOf(std::vector<T>& list, const T& entry)
{
    const auto found = std::find(list.begin(), list.end(), entry);
    const auto number = Size16(static_cast<size_t>(found - list.begin()) + 1);
    if (found == list.end()) list.push_back(entry);
    return number;
}

using Folder = std::vector<uint16_t>; // the folder's levels, as numbers of texts

Folder FolderOf(const std::string& path, std::vector<std::string>& texts)
{
    const size_t end = path.find('\\');
    Folder folder = {NumberOf(texts, path.substr(0, end))};
    if (end == std::string::npos) return folder;
    const std::string below = path.substr(end + 1);
    if (below.empty() || below.find('\\') != std::string::npos)
        throw Refusal("a folder is too deep: " + path);
    folder.push_back(NumberOf(texts, below));
    return folder;
}

void AppendNumbers(Bytes& bytes, const Folder& numbers)
{
    Append(bytes, Size16(2 * (numbers.size() + 1)));
    for (const uint16_t number : numbers) Append(bytes, number);
    Append(bytes, uint16_t{0});
}

Bytes ControlFile(const Package& package)
{
    std::vector<std::string> texts;
    std::vector<Folder> folders;
    Bytes files;
    for (size_t i = 0; i < package.files.size(); ++i) {
        const PackagedFile& file = package.files[i];
        const uint16_t number = Size16(i + 1), folder = NumberOf(folders, FolderOf(file.folder, texts));
        Append(files, number);
        Append(files, folder);
        Append(files, number);
        Append(files, uint32_t{0}); // flags
        Append(files, Size16(file.name.size() + 1));
        AppendText(files, file.name);
    }
    Bytes links;
    Append(links, uint16_t{1});
    Append(links, uint16_t{0});
    Append(links, StartMenuPrograms);
    Append(links, Size16(package.programFile + 1));
    Append(links, LinkToFile);
    AppendNumbers(links, {NumberOf(texts, package.application + ".lnk")});

    Bytes strings;
    for (size_t i = 0; i < texts.size(); ++i) {
        Append(strings, Size16(i + 1));
        Append(strings, Size16(texts[i].size() + 1));
        AppendText(strings, texts[i]);
    }
    Bytes directories;
    for (size_t i = 0; i < folders.size(); ++i) {
        Append(directories, Size16(i + 1));
        AppendNumbers(directories, folders[i]);
    }

    Bytes names;
    AppendText(names, package.application);
    const size_t applicationBytes = names.size();
    AppendText(names, package.provider);
    const Bytes none;
    const Bytes* const sections[] = {&strings, &directories, &files, &none, &none, &links}; // none: registry

    size_t total = ControlHeaderBytes + names.size();
    for (const Bytes* section : sections) total += section->size();
    Bytes control = {'M', 'S', 'C', 'E'};
    for (const uint32_t number : {0u, static_cast<uint32_t>(total), 0u, 1u, StrongArm, OldestSystem[0],
                                  OldestSystem[1], NewestSystem[0], NewestSystem[1], 0u, 0u})
        Append(control, number);
    for (const size_t count :
         {texts.size(), folders.size(), package.files.size(), size_t{0}, size_t{0}, size_t{1}})
        Append(control, Size16(count));
    auto place = static_cast<uint32_t>(ControlHeaderBytes + names.size());
    for (const Bytes* section : sections) {
        Append(control, place);
        place += static_cast<uint32_t>(section->size());
    }
    const size_t provider = ControlHeaderBytes + applicationBytes, behind = ControlHeaderBytes + names.size();
    for (const size_t number : {size_t{ControlHeaderBytes}, applicationBytes, provider, behind - provider,
                                behind, size_t{0}, size_t{0}, size_t{0}}) // no platform is excluded
        Append(control, Size16(number));
    Append(control, names);
    for (const Bytes* section : sections) Append(control, *section);
    return control;
}

// ---- The cabinet around it ----------------------------------------------------------------------------

struct Member {
    std::string name;
    std::span<const uint8_t> content;
};

// Letters and digits of the name, eight of them, with the file's number.
std::string MemberName(const std::string& name, size_t number)
{
    std::string base;
    for (const char c : name.substr(0, name.find('.')))
        if (std::isalnum(static_cast<unsigned char>(c)) && base.size() < 8) base += c;
    const std::string digits = std::to_string(number);
    return std::string(8 - base.size(), '0') + base + "." + std::string(3 - digits.size(), '0') + digits;
}

// The format's checksum: of 32-bit words, and of the last bytes with the highest first.
uint32_t Checksum(std::span<const uint8_t> bytes, uint32_t sum)
{
    const size_t whole = bytes.size() / 4 * 4;
    for (size_t i = 0; i < whole; i += 4) sum ^= Get<uint32_t>(bytes, i);
    uint32_t rest = 0;
    for (const uint8_t b : bytes.subspan(whole)) rest = rest << 8 | b;
    return sum ^ rest;
}

Bytes Cabinet(const std::vector<Member>& members)
{
    constexpr uint16_t Version = 0x0103, SetNumber = 0x4345, NotCompressed = 0;
    constexpr size_t HeaderBytes = 36, FolderBytes = 8;
    Bytes entries, content;
    for (const Member& member : members) {
        Append(entries, static_cast<uint32_t>(member.content.size()));
        Append(entries, static_cast<uint32_t>(content.size()));
        for (const uint16_t number : {uint16_t{0}, Date, uint16_t{0}, ReadableByAll}) Append(entries, number);
        AppendText(entries, member.name);
        Append(content, member.content);
    }
    Bytes blocks;
    uint16_t blockCount = 0;
    for (size_t place = 0; place < content.size(); place += BlockBytes) {
        const std::span<const uint8_t> data =
            Part(content, place, std::min(BlockBytes, content.size() - place));
        Bytes sizes;
        Append(sizes, Size16(data.size()));
        Append(sizes, Size16(data.size()));
        Append(blocks, Checksum(sizes, Checksum(data, 0)));
        Append(blocks, sizes);
        Append(blocks, data);
        ++blockCount;
    }

    const auto firstBlock = static_cast<uint32_t>(HeaderBytes + FolderBytes + entries.size());
    Bytes cabinet = {'M', 'S', 'C', 'F'};
    for (const uint32_t number : {0u, static_cast<uint32_t>(firstBlock + blocks.size()), 0u,
                                  static_cast<uint32_t>(HeaderBytes + FolderBytes), 0u})
        Append(cabinet, number);
    for (const uint16_t number :
         {Version, uint16_t{1}, Size16(members.size()), uint16_t{0}, SetNumber, uint16_t{0}})
        Append(cabinet, number);
    Append(cabinet, firstBlock);
    Append(cabinet, blockCount);
    Append(cabinet, NotCompressed);
    Append(cabinet, entries);
    Append(cabinet, blocks);
    return cabinet;
}

} // namespace

Bytes MakeCabinet(const Package& package)
{
    if (package.files.empty() || package.files.size() > MostFiles ||
        package.programFile >= package.files.size())
        throw Refusal("an install package has 1 to 999 files, and one of them is the program");
    const Bytes control = ControlFile(package);
    std::vector<Member> members = {{MemberName(package.application, 0), control}};
    for (size_t i = package.files.size(); i > 0;
         --i) // the installer expects the files from the last to the first
        members.push_back({MemberName(package.files[i - 1].name, i), package.files[i - 1].content});
    return Cabinet(members);
}

Bytes LinkContent(const std::string& programPath, const std::string& commandLine)
{
    const std::string command = '"' + programPath + "\" " + commandLine;
    const std::string text = std::to_string(command.size()) + "#" + command;
    return {text.begin(), text.end()};
}

} // namespace device
