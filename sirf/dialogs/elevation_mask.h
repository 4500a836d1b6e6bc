// Elevation Mask: the lowest satellites that are used (message id 139).
#pragma once

void ShowElevationMaskDialog();
