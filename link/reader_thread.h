// SPDX-License-Identifier: MIT
// Reception: one thread that takes bytes from the port, as many as are there, to everyone who wants them.
#pragma once

#include <cstdint>

#include "platform/platform.h"

// True if a read may wait until it has all bytes that it asks for, because the driver has refused the
// time-outs. The thread then asks for one byte at a time. Set before the thread is started.
extern std::atomic<uint8_t> ReadsMayBlock;

// Thread procedure; returns 0 once the port's handle has become invalid. While bytes arrive it does not rest;
// when none is there it sleeps 50 ms, during which the driver must hold what comes in.
DWORD WINAPI ReaderThread(void* unused);

// Takes received bytes to both assemblers, the byte counter and an open log. Both protocols are looked for
// all the time, whatever has been recognised. In how many portions the bytes come makes no difference to
// messages, their order, counters, measured rate and log. Provided by app/reception.cpp.
void RouteReceived(const uint8_t* bytes, uint32_t count);

// The same, but stops after the first byte that completes a message of either protocol. Returns how many of
// the bytes it took, which is at least one of `count`, itself at least one.
uint32_t RouteUpToMessage(const uint8_t* bytes, uint32_t count);
