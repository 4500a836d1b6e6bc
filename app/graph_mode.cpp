#include "app/graph_mode.h"

GraphModeValue GraphMode = GraphModeValue::TextPage;
