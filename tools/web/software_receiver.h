// SPDX-License-Identifier: MIT
// The receiver in software as a port of the page: it streams without anything plugged in.
#pragma once

#include "platform/web/web.h"
#include "receiver/line.h"
#include "receiver/receiver.h"

class SoftwareReceiver : public web::Device
{
public:
    // Its clock is right once the program's has run ahead of the page's by so many microseconds.
    explicit SoftwareReceiver(uint64_t ahead);
    void Open() override;
    std::string Read(size_t most, uint32_t rate) override;
    void Write(std::string_view bytes, uint32_t rate) override;
    uint64_t NextBytes() override;

private:
    void Run(uint32_t rate); // until now

    receiver::Receiver Sim;
    receiver::Line Wire;
    receiver::Bytes FromProgram;
    std::string Arrived;
    size_t Portion = 0; // bytes of it that can be read
    double Begun;
    double HandedOut = 0; // when the last portion began, seconds
};
