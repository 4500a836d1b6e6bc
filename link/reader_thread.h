// Reception: one thread that takes bytes from the port, one at a time, to everyone who wants them.
#pragma once

#include <cstdint>

#include "platform/platform.h"

// Thread procedure; returns 0 once the port's handle has become invalid. While bytes arrive it does not rest;
// when none is there it sleeps 50 ms, during which the driver must hold what comes in.
DWORD WINAPI ReaderThread(void* unused);

// Provided by app/reception.cpp. Takes one received byte to both assemblers, the byte counter and an open
// log, in this order. Both protocols are looked for all the time, whatever has been recognised.
void RouteReceivedByte(uint8_t b);
