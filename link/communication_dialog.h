// The Communication dialog: connects the program to the receiver, by hand or by search, shows what arrives,
// and opens and closes the receiver's log.
#pragma once

// Shows the dialog until it is closed; the port and the log stay as they are then. User-interface thread.
void ShowCommunicationDialog();
