// SPDX-License-Identifier: MIT
// The software receiver as a port of the page: it sends data without any connected device.
#pragma once

#include "platform/web/web.h"
#include "receiver/line.h"
#include "receiver/receiver.h"

class SoftwareReceiver : public web::Device
{
public:
    // Its clock is right after the program's clock has run ahead of the page's clock by this number of
    // microseconds.
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
    double HandedOut = 0; // time at which the last portion began, seconds
};
