// SPDX-License-Identifier: MIT
// One running copy of the program. User-interface thread.
#pragma once

// Makes this copy the only one until it leaves. False when another copy with this window class and title
// runs; that copy is brought to the front. If another copy is just starting or ending, the routine waits for
// it, at most five seconds.
bool BecomeOnlyCopy(const wchar_t* name);
void LeaveOnlyCopy();
