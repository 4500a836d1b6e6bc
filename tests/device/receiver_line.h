// SPDX-License-Identifier: MIT
// The software receiver at the other end of a scripted port, on a thread of the platform's.
#pragma once

#include <optional>

#include "headless.h"
#include "receiver/session.h"

class ReceiverLine
{
public:
    // Begins at once, at the given protocol and rate.
    ReceiverLine(HeadlessPort& port, receiver::Protocol protocol, uint32_t rate);
    ~ReceiverLine(); // waits for the thread

    const receiver::Receiver& Receiver() const { return Session.Sim; }

private:
    static DWORD Run(void* line);

    HeadlessPort& Port;
    receiver::Session Session;
    size_t Taken = 0; // of what the program has written
    bool Ending = false;
    HANDLE Thread;
};
