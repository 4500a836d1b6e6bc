// The About box; greets the user of a first start.
#pragma once

void ShowAboutDialog();
