// SPDX-License-Identifier: MIT
// Messages whose parameters are more than numbers, and their conversion in both directions.
#pragma once

#include <functional>
#include <vector>

#include "platform/platform.h"
#include "tests/device/memory.h"
#include "tests/device/structures.h"

// The work that remains when the call with the message has returned.
using AfterCall = std::vector<std::function<void()>>;

// From the program to the platform.
void MessageToHost(UINT message, uint32_t guestW, uint32_t guestL, WPARAM& wParam, LPARAM& lParam,
                   BorrowedTexts& borrowed, AfterCall& after);

// From the platform to the program.
void MessageToGuest(UINT message, WPARAM wParam, LPARAM lParam, uint32_t& guestW, uint32_t& guestL,
                    AfterCall& after);
