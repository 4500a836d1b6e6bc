// SPDX-License-Identifier: MIT
// Fixture of the tests of SiRF binary: payloads written by hand, and a dialog for the answers.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "tests/unit/support/product_test.h"

// Bytes of "29 00 ff"; blanks between bytes do not matter.
std::vector<uint8_t> Hex(std::string_view text);
std::string HexText(std::string_view text); // the same as a string

// A payload of `length` bytes, zero except the message id, into which bytes are written at given offsets.
struct Payload {
    std::vector<uint8_t> bytes;

    Payload(uint8_t id, size_t length) : bytes(length) { bytes[0] = id; }
    explicit Payload(std::string_view hex) : bytes(Hex(hex)) {}
    Payload& At(size_t offset, std::string_view hex);
    Payload& Shorten(size_t by = 1)
    {
        bytes.resize(bytes.size() - by);
        return *this;
    }
};

// The payload with start, length, checksum and end around it.
std::string Frame(const Payload& payload);

class SirfTest : public ProductTest
{
protected:
    // Directly to the decoder, from a buffer that continues after the payload with bytes of another message.
    static void Decode(const Payload& payload);
    static constexpr uint8_t BufferRest = 0xC7;

    // Opens a dialog of the kind with the controls given by number: `texts` (which begin as "?"), three-state
    // `boxes` (which begin undecided), option buttons, and lists with a number of entries, the last selected.
    struct List {
        int control;
        int entries;
    };
    struct Controls {
        std::vector<int> texts = {}, boxes = {};
        std::vector<List> lists = {};
    };
    void OpenDialog(DialogKind kind, const Controls& controls);
    void OpenAnotherKind(DialogKind kind); // with the controls of the dialog that is open

    std::wstring Text(int control) const { return HeadlessText(Dialog, control); }
    UINT Check(int control) const { return HeadlessCheck(Dialog, control); }
    int Selection(int control) const { return HeadlessSelection(Dialog, control); }

    HWND Dialog = nullptr;
};
