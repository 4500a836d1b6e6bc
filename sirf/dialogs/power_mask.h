// Power Mask: the weakest satellites that are used (message id 140).
#pragma once

void ShowPowerMaskDialog();
