// The whole system as freshly started; and the handle exchange, which needs nothing of it.
#include "platform/headless/internal.h"

using namespace headless;

void HeadlessReset()
{
    ResetScheduler(); // first: it refuses while other threads live
    ResetWindows();
    ResetMenus();
    ResetDrawing();
    ResetBoxes();
    ResetUser();
    ResetHandles();
    ResetFiles();
    ResetPorts();
    ResetRegistry();
    ResetLibraries();
    ResetErrors();
    ResetFaults();
}

HANDLE ExchangeHandle(std::atomic<HANDLE>& place, HANDLE value)
{
    PlatformCall();
    return place.exchange(value);
}

bool ReplaceHandle(std::atomic<HANDLE>& place, HANDLE expected, HANDLE value)
{
    PlatformCall();
    return place.compare_exchange_strong(expected, value);
}
