#include "shell/midi/MMIDIProcessor.h"

#include <sstream>
#include <string>

#include <gtest/gtest.h>

namespace
{

/// Writes down what it is called with.
class Recorder final : public MMIDIProcessorBase
{
public:
    std::string Take()
    {
        std::string result = log.str();
        log.str({});
        return result;
    }

    void ProcessNote(int offset, double time, int channel, int note, double velocity,
                     bool on) override
    {
        lastOffset = offset;
        lastTime = time;
        log << (on ? "on " : "off ") << channel << ' ' << note << ' ' << velocity << ';';
    }
    void ProcessPressure(int, double, int channel, int note, double value) override
    {
        log << "pressure " << channel << ' ' << note << ' ' << value << ';';
    }
    void ProcessProgramChange(int, double, int channel, int program) override
    {
        log << "program " << channel << ' ' << program << ';';
    }
    void ProcessVolume(int, double, int channel, double value) override
    {
        log << "volume " << channel << ' ' << value << ';';
    }
    void ProcessPan(int, double, int channel, double value) override
    {
        log << "pan " << channel << ' ' << value << ';';
    }
    void ProcessPitchWheel(int, double, int channel, double value) override
    {
        log << "wheel " << channel << ' ' << value << ';';
    }
    bool ProcessMIDIController(int, double, int channel, int number, double value) override
    {
        log << "controller " << channel << ' ' << number << ' ' << value << ';';
        return number == 1;
    }
    bool ProcessRawEvent(int, std::span<const std::byte> event) override
    {
        log << "raw " << event.size() << ';';
        return event.size() == 3;
    }
    void ProcessAllNotesOff(int, double) override { log << "all off;"; }
    void ProcessChannelNotesOff(int, double, int channel) override
    {
        log << "channel off " << channel << ';';
    }

    int lastOffset = -1;
    double lastTime = -1.0;

private:
    std::ostringstream log;
};

class MMIDIProcessorTest : public ::testing::Test
{
protected:
    MMIDIProcessorTest() { processor.AddListener(recorder, MMIDIProcessorBase::AllChannels); }

    bool Send(int status, int first, int second, int offset = 0)
    {
        const std::uint8_t bytes[] = {static_cast<std::uint8_t>(status),
                                      static_cast<std::uint8_t>(first),
                                      static_cast<std::uint8_t>(second)};
        return processor.ProcessMIDIEvent(offset, bytes);
    }

    MMIDIProcessor processor;
    Recorder recorder;
};

TEST_F(MMIDIProcessorTest, DecodesEachStatus)
{
    struct Case
    {
        int status, first, second;
        const char* calls;
        bool isTaken;
    };
    constexpr Case Cases[] = {
        {0x90, 60, 127, "on 0 60 0.992126;", true},
        {0x9F, 0, 1, "on 15 0 0;", true},
        {0x93, 60, 0, "off 3 60 0;", true},
        {0x80, 60, 64, "off 0 60 0.496063;", true},
        {0xA1, 61, 127, "pressure 1 61 1;", true},
        {0xB0, 1, 127, "controller 0 1 1;", true},
        {0xB0, 2, 0, "controller 0 2 0;", false},
        {0xB2, 7, 127, "controller 2 7 1;volume 2 1;", true},
        {0xB2, 10, 0, "controller 2 10 0;pan 2 0;", true},
        {0xB2, 123, 0, "controller 2 123 0;all off;", true},
        {0xB2, 126, 0, "controller 2 126 0;channel off 2;", true},
        {0xC4, 9, 0, "program 4 9;", false},
        {0xD5, 127, 0, "pressure 5 -1 1;", true},
        {0xE0, 0, 64, "wheel 0 3.05185e-05;", true},
        {0xE0, 0, 0, "wheel 0 -1;", true},
        {0xE0, 127, 127, "wheel 0 0.992187;", true},
        {0xF8, 0, 0, "", false},
        {0x40, 1, 2, "", false},
    };
    EXPECT_EQ(processor.GetPressure(), 0.5);
    EXPECT_EQ(processor.GetProgram(), -1);
    for (const Case& row : Cases)
    {
        EXPECT_EQ(Send(row.status, row.first, row.second), row.isTaken) << row.calls;
        EXPECT_EQ(recorder.Take(), row.calls);
        Send(0xB0, 123, 0); // ends what a row left sounding
        recorder.Take();
    }
    EXPECT_EQ(processor.GetVolume(), 1.0);
    EXPECT_EQ(processor.GetPan(), 0.0);
    EXPECT_NEAR(processor.GetPitch(), 0.9922, 1e-4);
    EXPECT_EQ(processor.GetPressure(), 1.0);
    EXPECT_EQ(processor.GetProgram(), 9);
}

TEST_F(MMIDIProcessorTest, DecodedEventsAreCutToTheRangesOfMIDI)
{
    struct Case
    {
        int channel, note;
        const char* on;
    };
    constexpr Case Cases[] = {
        {3, 60, "on 3 60 1;pressure 3 60 0.5;off 3 60 0;"},
        {15, 127, "on 15 127 1;pressure 15 127 0.5;off 15 127 0;"},
        {16, 128, "on 0 0 1;pressure 0 0 0.5;off 0 0 0;"},
        {32767, 32767, "on 15 127 1;pressure 15 127 0.5;off 15 127 0;"},
        {-32768, -32768, "on 0 0 1;pressure 0 0 0.5;off 0 0 0;"},
        {-1, -1, "on 15 127 1;pressure 15 127 0.5;off 15 127 0;"},
    };
    for (const Case& row : Cases)
    {
        processor.ProcessNotePerform(0, 0.0, row.channel, row.note, 1.0, true);
        processor.ProcessNotePressure(0, 0.0, row.channel, row.note, 0.5);
        processor.ProcessAllNotesOff(0, 0.0);
        std::string calls = recorder.Take();
        calls.erase(calls.find("all off;"), 8);
        EXPECT_EQ(calls, row.on) << row.channel << ' ' << row.note;
    }
    EXPECT_EQ(processor.GetPressure(), 0.5) << "of a whole channel alone";
}

TEST_F(MMIDIProcessorTest, RawEventsReachAllListeners)
{
    Recorder masked;
    processor.AddListener(masked, 0);
    const std::byte event[3]{};
    EXPECT_TRUE(processor.ProcessRawEvent(0, event));
    EXPECT_FALSE(processor.ProcessRawEvent(0, std::span(event).first(2)));
    EXPECT_EQ(recorder.Take(), "raw 3;raw 2;");
    EXPECT_EQ(masked.Take(), "raw 3;raw 2;");
}

TEST_F(MMIDIProcessorTest, EventsCountOneSampleEarlyAndInQuarters)
{
    processor.SetTime(90.0, 48000.0, 16.0);
    Send(0x90, 60, 100, 1);
    EXPECT_EQ(recorder.lastOffset, 0);
    EXPECT_EQ(recorder.lastTime, 16.0);
    Send(0x90, 60, 100, 32001); // two thirds of a second at 1.5 quarters a second
    EXPECT_EQ(recorder.lastOffset, 32000);
    EXPECT_NEAR(recorder.lastTime, 17.0, 1e-12);
}

TEST_F(MMIDIProcessorTest, SustainHoldsNoteOffsUntilThePedalRises)
{
    Send(0x90, 60, 100);
    Send(0xB0, 64, 127);
    recorder.Take();
    Send(0x80, 60, 0);
    EXPECT_EQ(recorder.Take(), "") << "held";
    Send(0x90, 60, 100); // struck again: takes the waiting note-off with it
    Send(0x90, 62, 100);
    Send(0x80, 62, 0);
    recorder.Take();
    Send(0xB0, 64, 0);
    EXPECT_EQ(recorder.Take(), "controller 0 64 0;off 0 62 0;");
    Send(0x80, 60, 0);
    EXPECT_EQ(recorder.Take(), "off 0 60 0;");
}

TEST_F(MMIDIProcessorTest, AllNotesOffEndsEachSoundingNoteAsOftenAsItWasStruck)
{
    Send(0x90, 60, 100);
    Send(0x90, 60, 100);
    Send(0x95, 61, 100);
    Send(0x85, 99, 0); // never struck: the count stays at 0
    recorder.Take();
    Send(0xB0, 126, 0);
    EXPECT_EQ(recorder.Take(), "controller 0 126 0;channel off 0;off 0 60 0;off 0 60 0;");
    Send(0xB0, 123, 0);
    EXPECT_EQ(recorder.Take(), "controller 0 123 0;all off;off 5 61 0;");
    Send(0xB0, 123, 0);
    EXPECT_EQ(recorder.Take(), "controller 0 123 0;all off;");
}

TEST_F(MMIDIProcessorTest, AListenerGetsTheChannelsOfItsMask)
{
    MMIDIProcessor masked;
    Recorder third;
    masked.AddListener(third, 1u << 3 | 1u << 15);
    for (int channel = 0; channel < 16; ++channel)
    {
        const std::uint8_t bytes[] = {static_cast<std::uint8_t>(0xE0 | channel), 0, 0};
        masked.ProcessMIDIEvent(0, bytes);
    }
    EXPECT_EQ(third.Take(), "wheel 3 -1;wheel 15 -1;");
}

} // namespace
