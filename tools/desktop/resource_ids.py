# SPDX-License-Identifier: MIT
"""The numbers of the program's menus, dialogs and controls, by their names in resources/resource_ids.h."""

import re
import types
from pathlib import Path

Header = Path(__file__).resolve().parents[2] / "resources" / "resource_ids.h"
Id = types.SimpleNamespace(**{name: int(number) for name, number in
                              re.findall(r"^#define (\w+) (\d+)", Header.read_text(), re.MULTILINE)})
