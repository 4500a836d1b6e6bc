// SPDX-License-Identifier: MIT
#include "resource_tree.h"

#include "packed_dialogs.h"
#include "platform/device/packed_template.h"

#include <compare>
#include <map>
#include <string>

namespace device
{

namespace
{

// A text or a number, in the order in which tables hold them.
struct ResourceName {
    bool isNumber;
    uint16_t number;
    std::u16string text;
    auto operator<=>(const ResourceName&) const = default;
};

constexpr uint16_t DialogType = 5;

ResourceName Number(uint16_t number)
{
    return {true, number, {}};
}

struct Node {
    std::map<ResourceName, Node> below; // of types, names, languages; none below a language
    Bytes data;
};

// A type or a name: 0xFFFF and a number, or text and its end.
ResourceName ReadName(std::span<const uint8_t> bytes, size_t& offset)
{
    const auto next = [&] {
        offset += 2;
        return Get<uint16_t>(bytes, offset - 2);
    };
    uint16_t unit = next();
    if (unit == 0xFFFF) return Number(next());
    std::u16string text;
    for (; unit; unit = next())
        text.push_back(unit >= 'a' && unit <= 'z' ? static_cast<char16_t>(unit - 'a' + 'A')
                                                  : static_cast<char16_t>(unit));
    return {false, 0, text};
}

Node ReadTree(std::span<const uint8_t> compiled)
{
    Node root;
    for (size_t offset = 0; offset < compiled.size();) {
        const uint32_t dataSize = Get<uint32_t>(compiled, offset),
                       headerSize = Get<uint32_t>(compiled, offset + 4);
        size_t inHeader = offset + 8;
        const ResourceName type = ReadName(compiled, inHeader), name = ReadName(compiled, inHeader);
        const uint16_t language = Get<uint16_t>(compiled, RoundUp(inHeader, size_t{4}) + 6);
        if (offset + headerSize < inHeader) throw Refusal("a resource's header is too short");
        const auto data = Part(compiled, offset + headerSize, dataSize);
        offset = RoundUp(offset + headerSize + dataSize, size_t{4});
        if (type == Number(0)) continue; // the empty entry at the file's beginning
        const bool isDialog = type == Number(DialogType);
        const ResourceName kept = isDialog ? Number(PackedTemplateType) : type;
        const auto [leaf, isNew] = root.below[kept].below[name].below.try_emplace(Number(language));
        if (!isNew) throw Refusal("a resource is there twice");
        leaf->second.data = isDialog ? PackTemplate(data) : Bytes(data.begin(), data.end());
    }
    if (root.below.empty()) throw Refusal("no resources");
    return root;
}

void AppendTable(Bytes& section, const Node& node, const std::map<const Node*, uint32_t>& places,
                 const std::map<std::u16string, uint32_t>& texts)
{
    constexpr uint32_t IsTableOrText = 0x80000000;
    uint16_t named = 0;
    for (const auto& [name, child] : node.below) named = static_cast<uint16_t>(named + !name.isNumber);
    Append(section, uint32_t{0}); // no characteristics, time or version
    Append(section, uint32_t{0});
    Append(section, uint32_t{0});
    Append(section, named);
    Append(section, static_cast<uint16_t>(node.below.size() - named));
    for (const auto& [name, child] : node.below) {
        Append(section, name.isNumber ? uint32_t{name.number} : IsTableOrText | texts.at(name.text));
        Append(section, places.at(&child) | (child.below.empty() ? 0 : IsTableOrText));
    }
}

} // namespace

Bytes MakeResourceSection(std::span<const uint8_t> compiled, uint32_t place)
{
    const Node root = ReadTree(compiled);

    // Breadth first: the tables of all levels, then the entries with the addresses of the data, then the
    // texts.
    std::vector<const Node*> nodes{&root};
    std::map<const Node*, uint32_t> places;
    std::map<std::u16string, uint32_t> texts;
    uint32_t end = 0;
    for (size_t i = 0; i < nodes.size(); ++i) {
        places[nodes[i]] = end;
        end += 16 + 8 * static_cast<uint32_t>(nodes[i]->below.size());
        for (const auto& [name, child] : nodes[i]->below) {
            nodes.push_back(&child);
            if (!name.isNumber) texts[name.text] = 0;
        }
    }
    for (auto& [text, offset] : texts) {
        offset = end;
        end += 2 + 2 * static_cast<uint32_t>(text.size());
    }

    constexpr uint32_t DataAlignment = 8;
    Bytes section;
    for (const Node* node : nodes) {
        if (!node->below.empty()) {
            AppendTable(section, *node, places, texts);
            continue;
        }
        end = RoundUp(end, DataAlignment);
        Append(section, place + end);
        Append(section, static_cast<uint32_t>(node->data.size()));
        Append(section, uint32_t{0}); // no code page
        Append(section, uint32_t{0});
        end += static_cast<uint32_t>(node->data.size());
    }
    for (const auto& [text, offset] : texts) {
        Append(section, static_cast<uint16_t>(text.size()));
        for (const char16_t unit : text) Append(section, static_cast<uint16_t>(unit));
    }
    for (const Node* node : nodes) {
        if (!node->below.empty()) continue;
        Align(section, DataAlignment);
        Append(section, node->data);
    }
    return section;
}

} // namespace device
