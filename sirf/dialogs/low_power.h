// Low Power: how long the receiver sleeps and searches (message id 167).
#pragma once

void ShowLowPowerDialog();
