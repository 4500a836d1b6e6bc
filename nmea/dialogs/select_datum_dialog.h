// Chooses the geodetic datum of the receiver's positions.
#pragma once

void ShowSelectDatumDialog();
