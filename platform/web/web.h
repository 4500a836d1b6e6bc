// SPDX-License-Identifier: MIT
// Declarations shared by the files of the page's platform, and those that the program for the page provides.
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

// Lets the program's clock run ahead to this time (microseconds) without waiting: for waits of the program
// that depend on nothing outside.
void HurryUntil(uint64_t time);

// Gives the page time for its own work. May be called on any of the program's threads.
void Breathe();

// Time of the page's clock, milliseconds.
double PageTime();

// ---- The user (user.cpp) ------------------------------------------------------------------------------

// The user-interface thread does this when it waits for the user's next act.
void Enqueue(std::function<void()> act);

// Makes the browser's colour chooser the program's one. To be called before the program starts.
void OfferColourChooser();

// ---- Ports (ports.cpp) --------------------------------------------------------------------------------

// A simulated device at a port, which the page does not open. Called on the program's threads.
class Device
{
public:
    virtual ~Device() = default;
    virtual void Open() = 0;
    virtual std::string Read(size_t most, uint32_t rate) = 0; // takes the received bytes, at most this number
    virtual void Write(std::string_view bytes, uint32_t rate) = 0;
    // Time of the next read if there is no data; memory::Never: when another thread wakes those that wait for
    // ports.
    virtual uint64_t NextBytes() = 0;
};

// Adds a port with this number and name.
void AddDevice(uint32_t number, const std::wstring& name, std::shared_ptr<Device> device);

// True if there is a port with this number, of the page or of a simulated device.
bool HasPort(uint32_t number);

// ---- The view (view.cpp) ------------------------------------------------------------------------------

// Sends the page all changes since the last call.
void UpdateView();

// State that the page shows by itself after an act of the user, so that it is not sent.
void ShownText(HWND control, const std::wstring& text);
void ShownSelection(HWND control, int index);
void ShownFocus(HWND control);

// A browser changes check boxes when they are clicked; so all of the control's dialog are sent again.
void ForgetChecks(HWND control);

// ---- Provided by tools/web ----------------------------------------------------------------------------

int Start();                             // runs the program on the user-interface thread; its exit code
void AfterStep();                        // checks for changes
bool Keeps(const std::wstring& setting); // false for a setting that the page must not store
std::wstring ChartValues();              // in words
std::wstring SkyValues();

} // namespace web
