#include "graph/graph_mode.h"

GraphModeValue GraphMode = GraphModeValue::TextPage;
