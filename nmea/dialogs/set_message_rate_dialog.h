// Sets how often each sentence comes, and shows when each came last.
#pragma once

void ShowNmeaMessageRateDialog();
