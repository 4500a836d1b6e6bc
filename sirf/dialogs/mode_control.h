// Mode Control: what the receiver does with few satellites (message id 136).
#pragma once

void ShowModeControlDialog();
