// SPDX-License-Identifier: MIT
#include "tests/support/fresh_program.h"

#include "graph/channels.h"
#include "graph/graph_settings.h"
#include "graph/recorder.h"
#include "graph/repaint.h"
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
#include "ui/active_dialog.h"
#include "ui/dialog_support.h"
#include "ui/error_boxes.h"
#include "ui/page_lines.h"

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
    ResetRepaint();
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
