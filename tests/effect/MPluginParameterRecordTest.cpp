#include "effect/MPluginParameterRecord.h"

#include <gtest/gtest.h>

namespace
{

TEST(MPluginParameterRecord, ModulationKeepsWhatTheUserSet)
{
    MPluginParameterRecord level;
    level.SetFloat("Level", 0.0, 1.0, 0.25);
    MPluginParameterRecord octaves;
    octaves.SetInt("Octaves", -3, 3, 2);
    for (MPluginParameterRecord* const record : {&level, &octaves})
    {
        const double value = record->Effective();
        record->SetModulated(true);
        EXPECT_EQ(record->Effective(), value) << "starts where the user left it";
        if (record == &level)
            record->range.asFloat.alternate = 1.0;
        else
            record->range.asInt.alternate = 1;
        EXPECT_EQ(record->Effective(), 1.0);
        record->SetModulated(false);
        EXPECT_EQ(record->Effective(), value);
    }
}

} // namespace
