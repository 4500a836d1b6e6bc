// Advanced Power Management (message id 53), with the measured times for which the receiver is on and off.
#pragma once

void ShowAdvancedPowerManagementDialog();
