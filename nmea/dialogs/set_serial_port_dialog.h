// Switches the receiver to another rate or protocol, and the program's own port after it.
#pragma once

void ShowSetSerialPortDialog();
