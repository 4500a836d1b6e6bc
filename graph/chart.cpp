#include "graph/chart.h"

// Nothing is drawn yet: the recorder only counts its samples.
void CreateChart(HWND, int, int) {}
void DeleteChart() {}
void PaintChart(HDC, int) {}
void LoadGraphSettings() {}
