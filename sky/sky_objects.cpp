#include "sky/sky_objects.h"

// The dialog that shows the sky does not exist yet, so there is nobody to compute it for.
void UpdateSkyObjects(uint16_t, uint8_t, uint8_t, uint8_t, uint8_t, uint8_t, double, double) {}
