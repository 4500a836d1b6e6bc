// SPDX-License-Identifier: MIT
// One running copy of the program. User-interface thread.
#pragma once

// Makes this copy the only one, until it leaves. False when another copy runs, under this name of its
// window's class and title; it is brought to the front. A copy that is just starting or ending is waited for,
// at most five seconds.
bool BecomeOnlyCopy(const wchar_t* name);
void LeaveOnlyCopy();
