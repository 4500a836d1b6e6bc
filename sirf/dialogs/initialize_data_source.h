// Initialize Data Source: restarts the receiver in one of seven ways, with or without a position and time to
// begin with (message id 128).
#pragma once

void ShowInitializeDataSourceDialog();
