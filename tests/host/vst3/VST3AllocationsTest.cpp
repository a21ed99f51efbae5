#include <gtest/gtest.h>

#include "tests/CountedAllocations.h"
#include "tests/host/vst3/FakeVst3Host.h"

using namespace Vst3;
using fakehost::Block;
using fakehost::Instance;
using fakehost::Note;

namespace
{

TEST(VST3Allocations, BlocksDoNotAllocate)
{
    if (!CanCountAllocations())
        GTEST_SKIP() << "allocations cannot be counted here";
    const Instance instance;
    instance.Start(48000, 512);
    fakehost::Changes changes;
    changes.queues.emplace_back(1, std::vector{0.9});
    changes.queues.emplace_back(4, std::vector{0.3});
    fakehost::Events events;
    events.list = {Note(Event::kNoteOnEvent, 0, 60, 0.5f, 3),
                   Note(Event::kNoteOffEvent, 0, 60, 0, 9)};
    Block block(512);
    block.outputPointers[1] = nullptr;
    block.inputPointers[1] = nullptr;
    block.data.inputParameterChanges = &changes;
    block.data.inputEvents = &events;
    instance.processor->process(block.data);
    EXPECT_EQ(AllocationsOf(
                  [&]
                  {
                      for (int i = 0; i < 20; ++i)
                      {
                          changes.queues[0].points[0] = 0.04 * i;
                          block.data.numSamples = 512 - i;
                          instance.processor->process(block.data);
                      }
                  }),
              0);
}

} // namespace
