// SPDX-License-Identifier: MIT
// The program's resources: the compiled resource script is part of the program, and is read here.
#include "platform/memory/memory.h"

#include <algorithm>
#include <optional>

// The build makes it from the compiled resource script.
extern const uint8_t Resources[];
extern const size_t ResourcesSize;

namespace memory
{

namespace
{

enum Type : uint32_t { Bitmap = 2, Menu = 4, Dialog = 5, String = 6, IconGroup = 14 };

constexpr uint16_t NumberMark = 0xFFFF; // precedes a number in the place of a text
constexpr uint32_t TemplateHasFont = 0x40;
constexpr uint16_t PopupItem = 0x10, LastItem = 0x80;
constexpr int DeepestMenu = 8;

// Names of the window classes that a template gives by number.
constexpr const wchar_t* ClassNames[] = {L"BUTTON",  L"EDIT",      L"STATIC",
                                         L"LISTBOX", L"SCROLLBAR", L"COMBOBOX"};
constexpr uint16_t FirstClass = 0x80;

struct Name {
    uint32_t number = 0;
    std::wstring text; // in capitals, as the compiler stores it; empty if it is a number
};

// Reads little-endian fields; after the end everything is 0 and `Bad` is true.
class Reader
{
public:
    explicit Reader(std::span<const uint8_t> bytes) : Bytes(bytes) {}

    uint8_t U8()
    {
        if (Place >= Bytes.size()) {
            IsBad = true;
            return 0;
        }
        return Bytes[Place++];
    }
    uint16_t U16()
    {
        const uint8_t low = U8();
        return static_cast<uint16_t>(low | U8() << 8);
    }
    uint32_t U32()
    {
        const uint16_t low = U16();
        return low | static_cast<uint32_t>(U16()) << 16;
    }
    int S16() { return static_cast<int16_t>(U16()); }

    std::wstring Text()
    {
        std::wstring text;
        for (uint16_t unit = U16(); unit != 0; unit = U16()) text += static_cast<wchar_t>(unit);
        return text;
    }
    Name TextOrNumber()
    {
        const size_t start = Place;
        if (U16() == NumberMark) return {U16(), {}};
        Place = start;
        return {0, Text()};
    }
    std::span<const uint8_t> Take(size_t count)
    {
        if (count > Bytes.size() - Place) {
            IsBad = true;
            count = Bytes.size() - Place;
        }
        Place += count;
        return Bytes.subspan(Place - count, count);
    }
    void Align()
    {
        while (Place % 4 != 0 && !AtEnd()) ++Place;
    }
    bool AtEnd() const { return Place >= Bytes.size(); }
    bool Bad() const { return IsBad; }
    size_t Position() const { return Place; }

private:
    std::span<const uint8_t> Bytes;
    size_t Place = 0;
    bool IsBad = false;
};

struct Resource {
    Name type, name;
    std::span<const uint8_t> data;
};

std::vector<Resource> ReadResources()
{
    std::vector<Resource> resources;
    Reader reader({Resources, ResourcesSize});
    while (!reader.AtEnd()) {
        const size_t start = reader.Position();
        const uint32_t dataSize = reader.U32(), headerSize = reader.U32();
        Resource resource{reader.TextOrNumber(), reader.TextOrNumber(), {}};
        const size_t read = reader.Position() - start;
        if (headerSize < read) break;
        reader.Take(headerSize - read);
        resource.data = reader.Take(dataSize);
        reader.Align();
        if (reader.Bad()) break;
        resources.push_back(std::move(resource));
    }
    return resources;
}

std::optional<Reader> Find(Type type, const Name& name)
{
    static const std::vector<Resource> resources = ReadResources();
    for (const Resource& resource : resources)
        if (resource.type.number == type && resource.name.number == name.number &&
            (name.text.empty() || Lower(resource.name.text) == Lower(name.text)))
            return Reader(resource.data);
    Fail(ERROR_RESOURCE_NAME_NOT_FOUND);
    return {};
}

Name NameOf(const wchar_t* name)
{
    if (IsNumber(name)) return {static_cast<uint32_t>(reinterpret_cast<uintptr_t>(name)), {}};
    return {0, name};
}

std::wstring ClassName(const Name& name)
{
    if (!name.text.empty()) return name.text;
    const uint32_t index = name.number - FirstClass;
    return index < std::size(ClassNames) ? ClassNames[index] : L"";
}

bool ReadMenu(Reader& reader, int depth, std::vector<MenuEntry>& entries)
{
    for (;;) {
        const uint16_t flags = reader.U16();
        const UINT id = flags & PopupItem ? 0 : reader.U16();
        entries.push_back({depth, id, reader.Text()});
        if (reader.Bad() || depth > DeepestMenu) return false;
        if ((flags & PopupItem) && !ReadMenu(reader, depth + 1, entries)) return false;
        if (flags & LastItem) return true;
    }
}

TemplateControl ReadControl(Reader& reader, bool extended)
{
    TemplateControl control{};
    reader.Align();
    if (extended) {
        reader.U32(); // help
        reader.U32(); // extended style
        control.style = reader.U32();
    } else {
        control.style = reader.U32();
        reader.U32();
    }
    control.x = reader.S16();
    control.y = reader.S16();
    control.width = reader.S16();
    control.height = reader.S16();
    control.id = extended ? static_cast<int>(reader.U32()) : reader.S16();
    control.className = ClassName(reader.TextOrNumber());
    control.text = reader.TextOrNumber().text;
    reader.Take(reader.U16()); // creation data
    return control;
}

} // namespace

bool FindTemplate(const wchar_t* name, Template& found)
{
    std::optional<Reader> reader = Find(Dialog, NameOf(name));
    if (!reader) return false;
    found = {};
    const uint32_t first = reader->U32();
    const bool extended = first == 0xFFFF0001;
    if (extended) {
        reader->U32(); // help
        reader->U32(); // extended style
        found.style = reader->U32();
    } else {
        found.style = first;
        reader->U32();
    }
    const uint16_t count = reader->U16();
    found.x = reader->S16();
    found.y = reader->S16();
    found.width = reader->S16();
    found.height = reader->S16();
    reader->TextOrNumber(); // menu
    reader->TextOrNumber(); // window class
    found.caption = reader->Text();
    if (found.style & TemplateHasFont) {
        reader->Take(extended ? 6 : 2); // size, weight, slant, character set
        reader->Text();
    }
    for (uint16_t i = 0; i < count && !reader->Bad(); ++i)
        found.controls.push_back(ReadControl(*reader, extended));
    return !reader->Bad() || Fail(ERROR_RESOURCE_NAME_NOT_FOUND);
}

bool FindMenu(const wchar_t* name, std::vector<MenuEntry>& found)
{
    std::optional<Reader> reader = Find(Menu, NameOf(name));
    if (!reader) return false;
    const uint16_t version = reader->U16();
    reader->Take(reader->U16());
    found.clear();
    return (version == 0 && ReadMenu(*reader, 0, found)) || Fail(ERROR_RESOURCE_NAME_NOT_FOUND);
}

bool FindPicture(const wchar_t* name, Picture& found)
{
    std::optional<Reader> reader = Find(Bitmap, NameOf(name));
    if (!reader) return false;
    const uint32_t headerSize = reader->U32();
    const int32_t width = static_cast<int32_t>(reader->U32()), height = static_cast<int32_t>(reader->U32());
    reader->U16(); // planes
    const uint16_t bits = reader->U16();
    const uint32_t compression = reader->U32();
    reader->Take(12); // size of the pixels, resolution
    const uint32_t used = reader->U32();
    reader->Take(headerSize - 36); // the rest, with "important colours"
    const bool known = bits == 1 || bits == 4 || bits == 8 || bits == 24 || bits == 32;
    if (!known || compression != BI_RGB || width <= 0 || width > 4096 || height <= 0 || height > 4096)
        return Fail(ERROR_RESOURCE_NAME_NOT_FOUND);

    std::vector<uint32_t> palette;
    if (bits <= 8) {
        const uint32_t colors = used == 0 || used > (1u << bits) ? 1u << bits : used;
        for (uint32_t i = 0; i < colors; ++i) palette.push_back(reader->U32() & 0xFFFFFF);
        palette.resize(size_t{1} << bits);
    }
    found = {width, height, std::vector<uint32_t>(static_cast<size_t>(width) * static_cast<size_t>(height))};
    const size_t rowBytes = (static_cast<size_t>(width) * bits + 31) / 32 * 4;
    for (int y = height - 1; y >= 0; --y) { // the bottom row comes first
        const std::span<const uint8_t> row = reader->Take(rowBytes);
        if (reader->Bad()) return Fail(ERROR_RESOURCE_NAME_NOT_FOUND);
        for (size_t x = 0; x < static_cast<size_t>(width); ++x) {
            uint32_t color = 0;
            if (bits <= 8) {
                const size_t bit = x * bits;
                color = palette[(row[bit / 8] >> (8 - bits - bit % 8)) & ((1u << bits) - 1)];
            } else {
                const size_t place = x * bits / 8;
                color = row[place] | static_cast<uint32_t>(row[place + 1]) << 8 |
                        static_cast<uint32_t>(row[place + 2]) << 16;
            }
            found.pixels[static_cast<size_t>(y) * static_cast<size_t>(width) + x] = color;
        }
    }
    return true;
}

bool FindIcon(const wchar_t* name)
{
    return Find(IconGroup, NameOf(name)).has_value();
}

bool FindText(UINT id, std::wstring& found)
{
    std::optional<Reader> reader = Find(String, {id / 16 + 1, {}});
    if (!reader) return false;
    for (UINT skipped = 0; skipped < id % 16; ++skipped) reader->Take(size_t{reader->U16()} * 2);
    found.clear();
    for (uint16_t left = reader->U16(); left != 0; --left) found += static_cast<wchar_t>(reader->U16());
    return (!reader->Bad() && !found.empty()) || Fail(ERROR_RESOURCE_NAME_NOT_FOUND);
}

} // namespace memory

using namespace memory;

int LoadStringW(HINSTANCE, UINT id, wchar_t* text, int capacity)
{
    std::wstring found;
    if (Fails(Call::LoadStringW) || capacity <= 0 || !FindText(id, found)) return 0;
    const size_t length = std::min(found.size(), static_cast<size_t>(capacity) - 1);
    found.copy(text, length);
    text[length] = 0;
    return static_cast<int>(length);
}

HICON LoadIconW(HINSTANCE, const wchar_t* name)
{
    if (Fails(Call::LoadIconW) || !FindIcon(name)) return nullptr;
    return reinterpret_cast<HICON>(uintptr_t{0x300});
}

HCURSOR LoadCursorW(HINSTANCE instance, const wchar_t*)
{
    if (Fails(Call::LoadCursorW)) return nullptr;
    if (instance) return Fail(ERROR_RESOURCE_NAME_NOT_FOUND), nullptr; // only the system's own
    return reinterpret_cast<HCURSOR>(uintptr_t{0x310});
}
