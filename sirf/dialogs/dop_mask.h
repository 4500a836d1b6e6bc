// DOP Mask: the geometry up to which a position is computed (message id 137).
#pragma once

void ShowDopMaskDialog();
