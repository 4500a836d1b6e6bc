// Which dialog is open, for the decoders: they fill its controls, or repaint the main window when none is.
#pragma once

#include <atomic>
#include <cstdint>

#include "platform/platform.h"

enum class DialogKind : uint32_t {
    None = 0,
    About = 1,
    Communication = 2,
    SetSerialPort = 3,
    NavigationInitialization = 4,
    NmeaSetMessageRate = 5,
    DevelopmentData = 6,
    SelectDatum = 7,
    AdvancedPowerManagement = 8,
    InitializeDataSource = 9,
    SwitchToNmea = 10,
    PollSoftwareVersion = 11,
    DgpsSource = 12,
    ModeControl = 13,
    DopMask = 14,
    DgpsMode = 15,
    ElevationMask = 16,
    PowerMask = 17,
    StaticNavigation = 18,
    TricklePower = 19,
    SirfSetMessageRate = 20,
    LowPower = 21,
    Sbas = 22,
    GraphOptions = 23,
};

// The top-level window; written once by the user-interface thread, null before it exists and after.
extern std::atomic<HWND> MainWindow;

// Written by the user-interface thread, read by both. The window is published before the kind and withdrawn
// after it, so that whoever sees a kind finds a window that has its controls, or none. Sequentially
// consistent.
extern std::atomic<HWND> ActiveDialogWindow;
extern std::atomic<DialogKind> ActiveDialogKind;

// Called by a dialog when it opens and before it ends (again from its destruction: harmless).
void PublishDialog(DialogKind kind, HWND dialog);
void WithdrawDialog();

// The open dialog's window if it is of this kind, else null.
HWND OpenDialogOfKind(DialogKind kind);

// Marks the whole main window for painting, without erasing it, unless a dialog is open.
void RepaintMainWindow();
