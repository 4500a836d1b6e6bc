// SiRF Set Message Rate: how often the receiver sends one of its messages (message id 166), with the list of
// when each kind arrived last.
#pragma once

void ShowSirfSetMessageRateDialog();
