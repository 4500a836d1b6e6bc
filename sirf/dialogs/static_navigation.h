// Static Navigation: whether the position stands still while the receiver does (message id 143).
#pragma once

void ShowStaticNavigationDialog();
