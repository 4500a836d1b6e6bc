// SPDX-License-Identifier: MIT
// The platform interface of the headless platform: the system in memory as it is.
#pragma once

#include "platform/memory/system.h"
