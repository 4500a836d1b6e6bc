// Switch to NMEA Protocol: makes the receiver leave SiRF binary (message id 129), and the program's port
// follow it to the new rate.
#pragma once

void ShowSwitchToNmeaDialog();
