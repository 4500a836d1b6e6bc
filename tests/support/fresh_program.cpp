#include "tests/support/fresh_program.h"

#include "app/active_dialog.h"
#include "app/dialog_support.h"
#include "app/error_boxes.h"
#include "app/text_view.h"
#include "graph/channels.h"
#include "graph/graph_settings.h"
#include "graph/recorder.h"
#include "headless.h"
#include "link/link_state.h"
#include "link/receiver_log.h"
#include "link/serial_port.h"
#include "link/write_queue.h"
#include "nmea/sentence_assembler.h"
#include "nmea/sentence_decoder.h"
#include "sirf/frame_assembler.h"
#include "sirf/message_decoder.h"
#include "sky/sky_objects.h"
#include "sky/sky_plot.h"

void StartAfresh()
{
    HeadlessReset();
    UserInterfaceThread.store(GetCurrentThreadId());
    MainWindow.store(nullptr);
    WithdrawDialog();
    ResetErrorBoxes();
    ResetLinkState();
    ResetChannels();
    ResetNmeaAssembler();
    ResetNmeaDecoder();
    ResetSirfFramer();
    ResetSirfDecoder();
    ResetRecorder();
    ResetGraphSettings();
    ResetSkyObjects();
    ResetSkyPlot();
    PortHandle.store(INVALID_HANDLE_VALUE);
    PortProperties = {};
    PortDcb = {};
    LogFileHandle.store(INVALID_HANDLE_VALUE);
    WriteHead = WriteTail = 0;
    ChooseLayout();
    StartTextView();
}

void CloseEverything()
{
    PortClose();
    LogClose();
}
