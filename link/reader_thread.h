// SPDX-License-Identifier: MIT
// Reception: one thread reads all available bytes from the port and passes them on.
#pragma once

#include <cstdint>

#include "platform/platform.h"

// True if a read may wait until it has all requested bytes, because the driver has refused the time-outs. The
// thread then reads one byte at a time. Set before the thread is started.
extern std::atomic<uint8_t> ReadsMayBlock;

// Thread procedure; returns 0 when the port's handle has become invalid. While bytes arrive it does not
// pause; when there are none it sleeps for 50 ms, during which the driver must store incoming bytes.
DWORD WINAPI ReaderThread(void* unused);

// Passes received bytes to both assemblers, the byte counter and an open log. Both protocols are searched for
// all the time, even when one has been recognised. Messages, their order, counters, measured rate and log do
// not depend on the portions in which the bytes arrive. Provided by app/reception.cpp.
void RouteReceived(const uint8_t* bytes, uint32_t count);

// The same, but stops after the first byte that completes a message of either protocol. Returns how many of
// the bytes it took, which is at least one of `count`, itself at least one.
uint32_t RouteUpToMessage(const uint8_t* bytes, uint32_t count);
