// DGPS Mode: how corrections are used (message id 138).
#pragma once

void ShowDgpsModeDialog();
