// SPDX-License-Identifier: MIT
// The form of a message between program and page: its number, then its fields, each aligned to four bytes.
// Numbers have 32 bits, little-endian; a text is its length and its UTF-16 units; lists and bytes begin with
// their count. program.js contains the page's half.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace web
{

class Writer
{
public:
    void Put(int32_t number) { Bytes.append(reinterpret_cast<const char*>(&number), sizeof number); }
    void Put(bool flag) { Put(int32_t{flag}); }
    void Put(std::string_view bytes)
    {
        Put(static_cast<int32_t>(bytes.size()));
        Bytes += bytes;
        Bytes.resize((Bytes.size() + 3) / 4 * 4);
    }
    void Put(const std::wstring& text)
    {
        std::u16string units;
        for (const wchar_t character : text) {
            auto code = static_cast<uint32_t>(character);
            if (code > 0x10FFFF) code = 0xFFFD;
            if (code > 0xFFFF) {
                units += static_cast<char16_t>(0xD7C0 + (code >> 10));
                code = 0xDC00 + (code & 0x3FF);
            }
            units += static_cast<char16_t>(code);
        }
        Put(static_cast<int32_t>(units.size()));
        Bytes.append(reinterpret_cast<const char*>(units.data()), units.size() * 2);
        Bytes.resize((Bytes.size() + 3) / 4 * 4);
    }
    template <typename Item> void Put(const std::vector<Item>& items)
    {
        Put(static_cast<int32_t>(items.size()));
        for (const Item& item : items) Put(item);
    }

    std::string Bytes;
};

// After the end, all fields are 0 or empty, and Bad() is true.
class Fields
{
public:
    explicit Fields(std::string_view message) : Left(message) {}

    int32_t Number()
    {
        int32_t number = 0;
        const std::string_view bytes = Take(sizeof number);
        if (!IsBad) std::memcpy(&number, bytes.data(), sizeof number);
        return number;
    }
    bool Boolean() { return Number() != 0; }
    std::string_view Bytes() { return Take(static_cast<uint32_t>(Number())); }
    std::wstring String()
    {
        const std::string_view bytes = Take(uint64_t{static_cast<uint32_t>(Number())} * 2);
        std::wstring text;
        for (size_t i = 0; i + 1 < bytes.size(); i += 2) {
            auto unit = static_cast<uint32_t>(static_cast<uint8_t>(bytes[i]) |
                                              static_cast<uint8_t>(bytes[i + 1]) << 8);
            if (unit >= 0xDC00 && unit < 0xE000 && !text.empty() && (text.back() & 0xFFFFFC00) == 0xD800) {
                unit = 0x10000 + ((static_cast<uint32_t>(text.back()) & 0x3FF) << 10) + (unit & 0x3FF);
                text.pop_back();
            }
            text += static_cast<wchar_t>(unit);
        }
        return text;
    }
    std::vector<std::wstring> Texts()
    {
        return List<std::wstring>([this] { return String(); });
    }
    std::vector<int32_t> Numbers()
    {
        return List<int32_t>([this] { return Number(); });
    }
    bool Bad() const { return IsBad; }

private:
    // Reads this number of bytes, and skips the padding before the next field.
    std::string_view Take(uint64_t count)
    {
        const uint64_t padded = (count + 3) / 4 * 4;
        if (padded > Left.size()) {
            IsBad = true;
            Left = {};
            return {};
        }
        const std::string_view taken = Left.substr(0, static_cast<size_t>(count));
        Left.remove_prefix(static_cast<size_t>(padded));
        return taken;
    }
    template <typename Item, typename Read> std::vector<Item> List(Read read)
    {
        std::vector<Item> items;
        for (int32_t left = Number(); left > 0 && !IsBad; --left) items.push_back(read());
        return items;
    }

    std::string_view Left;
    bool IsBad = false;
};

// Passes an encoded message to the page.
void HandOut(const std::string& message);

template <typename... Values> void Send(int32_t number, const Values&... values)
{
    Writer writer;
    writer.Put(number);
    (writer.Put(values), ...);
    HandOut(writer.Bytes);
}

} // namespace web
