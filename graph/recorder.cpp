#include "graph/recorder.h"

std::atomic<uint32_t> GraphSampleCount{0};

void RecordGraphSample()
{
    GraphSampleCount.store(GraphSampleCount.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
}
