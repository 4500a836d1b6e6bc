// SPDX-License-Identifier: MIT
// Shows the receiver's answers and reports in the controls of the open dialog; does nothing if their dialog
// is not open. Reader thread.
//
// The caller of each routine has checked that the payload is at least as long as the message. The last
// message of each kind is kept, also when its dialog is not open.
#pragma once

#include <cstdint>

#include "sirf/page_lines.h"

// Software version (message id 6): text of up to 80 characters after the message id.
void ShowSoftwareVersion(const uint8_t* payload, uint32_t length);

// OK to send (18) announces that the receiver's radio goes on or off: measures the times on and off, in
// milliseconds.
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

// Settings of one command (43); an answer that is too short for its command is not shown.
void ShowCommandParameters(const uint8_t* payload, uint32_t length);
constexpr uint32_t CommandParametersLength = 26;

// An SBAS satellite on one of the receiver's channels (4), for the SBAS dialog.
void ShowSbasSatellites(const TrackedSatellite* satellites, uint32_t count);

// Shows the time of day in the form of the text page, or the time of week, if the open dialog has a place for
// it.
void ShowReceiverTime(uint32_t timeOfWeekSeconds);

// Sets everything to its state at program start.
void ResetReadBack();

extern uint8_t OkToSendRecord[OkToSendLength];
extern uint8_t NavigationParameterRecord[NavigationParametersLength];
extern uint8_t DgpsStatusRecord[DgpsStatusLength];
extern uint8_t CorrectionRecord[CorrectionLength];
extern uint8_t ParameterRecord[CommandParametersLength];
