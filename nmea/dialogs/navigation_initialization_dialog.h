// Restarts the receiver: hot, warm, cold, with or without a position and time to start from.
#pragma once

void ShowNavigationInitializationDialog();
