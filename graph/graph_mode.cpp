// SPDX-License-Identifier: MIT
#include "graph/graph_mode.h"

std::atomic<GraphModeValue> GraphMode{GraphModeValue::TextPage};
