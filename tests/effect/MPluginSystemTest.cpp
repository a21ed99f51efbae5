#include "effect/MPluginSystem.h"

#include <gtest/gtest.h>

#include "effect/TonvaleAudioEffectPluginInterface.h"

namespace
{

using Result = MPluginSystem::Result;

int destroyed = 0;

TEST(MPluginSystem, CreatesThePluginBehindItsEntryPoint)
{
    std::unique_ptr<MAudioEffectPluginHost> host;
    {
        MPluginSystem system;
        ASSERT_EQ(system.CreatePlugin(&TonvaleAudioEffectPluginInterface, "Tonvale", host),
                  Result::Created);
    }
    EXPECT_EQ(host->CallPlugin(MPluginCommand::GetInstance),
              reinterpret_cast<std::intptr_t>(static_cast<MPlugin*>(host->GetPlugin())));
    EXPECT_EQ(&host->GetPlugin()->GetInfo(), host->GetPluginInfo());
    EXPECT_EQ(host->CallPlugin(MPluginCommand::Destroy), 0);
}

TEST(MPluginSystem, TellsWhyThereIsNoPlugin)
{
    MPluginSystem system;
    std::unique_ptr<MAudioEffectPluginHost> host;
    EXPECT_EQ(system.CreatePlugin(nullptr, "", host), Result::NoEntryPoint);

    const MPluginCall noPlugin = [](void*, std::int32_t, const MPluginCommandArguments*) noexcept
    { return std::intptr_t{0}; };
    EXPECT_EQ(system.CreatePlugin(noPlugin, "", host), Result::NoPlugin);

    const MPluginCall noInfo = [](void*, std::int32_t command,
                                  const MPluginCommandArguments*) noexcept -> std::intptr_t
    {
        destroyed += command == 1;
        return command == 0 ? reinterpret_cast<std::intptr_t>(&destroyed) : 0;
    };
    EXPECT_EQ(system.CreatePlugin(noInfo, "", host), Result::NoInfo);
    EXPECT_EQ(destroyed, 1) << "what was made is not left behind";
    EXPECT_EQ(host, nullptr);
}

} // namespace
