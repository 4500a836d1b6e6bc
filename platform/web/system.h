// SPDX-License-Identifier: MIT
// The platform interface of the page: the system in memory, unchanged.
#pragma once

#include "platform/memory/system.h"
