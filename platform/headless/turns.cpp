// SPDX-License-Identifier: MIT
// The usual platform: exactly one thread runs at a time, so the additions for real threads are empty here.
#include "platform/headless/internal.h"

namespace memory
{

const bool RealThreads = false;

void EnterPlatform() {}
void LeavePlatform() {}
void PauseReally() {}
void HandOver(const void*) {}
void TakeOver(const void*) {}

InProgram::InProgram() : depth(0) {}
InProgram::~InProgram() = default;

} // namespace memory
