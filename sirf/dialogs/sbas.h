#pragma once

// Chooses SBAS satellite, mode and time-out, and shows where the satellites stand; message id 170.
void ShowSbasDialog();
