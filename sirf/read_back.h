// SPDX-License-Identifier: MIT
// The receiver's answers and reports in the controls of the dialog that is open for them; nothing where it is
// not. Reader thread.
//
// Each routine takes a payload that its caller has found to be at least as long as the message; the last
// message of each kind is kept whether or not its dialog is open.
#pragma once

#include <cstdint>

#include "sirf/page_lines.h"

// Software version (message id 6): text of up to 80 characters behind the message id.
void ShowSoftwareVersion(const uint8_t* payload, uint32_t length);

// OK to send (18), which announces when the receiver's radio goes on and off: measures how long it was on and
// off, in milliseconds.
void ShowOkToSend(const uint8_t* payload);
constexpr uint32_t OkToSendLength = 2;

// Navigation parameters (19), for Low Power and Advanced Power Management.
void ShowNavigationParameters(const uint8_t* payload);
constexpr uint32_t NavigationParametersLength = 65;

// DGPS status (27).
void ShowDgpsStatus(const uint8_t* payload);
constexpr uint32_t DgpsStatusLength = 52;

// Differential data of one satellite (29): collected into three lines until EndCorrections, which the next
// navigation message (41) causes.
void ShowCorrection(const uint8_t* payload);
constexpr uint32_t CorrectionLength = 26;
void EndCorrections();

// Settings of one command (43); an answer too short for its command shows nothing.
void ShowCommandParameters(const uint8_t* payload, uint32_t length);
constexpr uint32_t CommandParametersLength = 26;

// An SBAS satellite on one of the receiver's channels (4), for the SBAS dialog.
void ShowSbasSatellites(const TrackedSatellite* satellites, uint32_t count);

// Time of day, as the text page shows it, or time of week, where a dialog has a place for it.
void ShowReceiverTime(uint32_t timeOfWeekSeconds);

// Everything as when the program starts.
void ResetReadBack();

extern uint8_t OkToSendRecord[OkToSendLength];
extern uint8_t NavigationParameterRecord[NavigationParametersLength];
extern uint8_t DgpsStatusRecord[DgpsStatusLength];
extern uint8_t CorrectionRecord[CorrectionLength];
extern uint8_t ParameterRecord[CommandParametersLength];
