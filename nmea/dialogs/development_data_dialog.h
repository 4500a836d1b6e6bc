// Sends any sentence that the user types.
#pragma once

void ShowDevelopmentDataDialog();
