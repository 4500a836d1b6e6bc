// Trickle Power: the share of the time for which the receiver is on (message id 151), with what it really
// keeps.
#pragma once

void ShowTricklePowerDialog();
