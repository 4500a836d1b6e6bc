// SPDX-License-Identifier: MIT
// What the files of the page's platform share, and what the program for the page adds to it.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "platform/memory/memory.h"

namespace web
{

// ---- Clock and turns (fibers.cpp) ---------------------------------------------------------------------

// The program's clock runs ahead without waiting until it has come so far, microseconds: for what the program
// waits for although nothing outside takes time.
void HurryUntil(uint64_t time);

// Lets the page do its own work for a moment. On any of the program's threads.
void Breathe();

// Milliseconds of the page's clock.
double PageTime();

// ---- The user (user.cpp) ------------------------------------------------------------------------------

// Has the user-interface thread do this when it waits for the user's next act.
void Enqueue(std::function<void()> act);

// Makes the browser's colours the program's colour chooser; before the program starts.
void OfferColourChooser();

// ---- Ports (ports.cpp) --------------------------------------------------------------------------------

// What stands at the other end of a port that the page need not open. Called on the program's threads.
class Device
{
public:
    virtual ~Device() = default;
    virtual void Open() = 0;
    virtual std::string Read(size_t most, uint32_t rate) = 0; // what has come, at most so many bytes
    virtual void Write(std::string_view bytes, uint32_t rate) = 0;
    // When to read again if nothing has come, memory::Never: not before a thread wakes those that wait for
    // ports.
    virtual uint64_t NextBytes() = 0;
};

// The port with this number and name is there from now on.
void AddDevice(uint32_t number, const std::wstring& name, std::shared_ptr<Device> device);

// True if a port with this number is there, be it the page's or a device's.
bool HasPort(uint32_t number);

// ---- The view (view.cpp) ------------------------------------------------------------------------------

// Sends the page what has changed since it was called last.
void UpdateView();

// What the page shows by itself after an act of the user, and need not be sent.
void ShownText(HWND control, const std::wstring& text);
void ShownSelection(HWND control, int index);
void ShownFocus(HWND control);

// A browser changes checks when they are clicked; those of the control's dialog are sent again.
void ForgetChecks(HWND control);

// ---- Provided by tools/web ----------------------------------------------------------------------------

int Start();                             // runs the program on the user-interface thread; its exit code
void AfterStep();                        // looks at what has changed
bool Keeps(const std::wstring& setting); // false for one that the page is not to store
std::wstring ChartValues();              // in words
std::wstring SkyValues();

} // namespace web
