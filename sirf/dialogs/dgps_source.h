// DGPS Source: where corrections come from (message id 133), with the receiver's reports of them.
#pragma once

void ShowDgpsSourceDialog();
