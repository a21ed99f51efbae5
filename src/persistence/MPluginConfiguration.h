#pragma once

#include "persistence/MConfigurationFile.h"

/// What the user has settled for all plugins of the family and all of their instances, in
/// "MPluginConfiguration.xml". Threads and failures as of MConfigurationFile.
class MPluginConfiguration
{
public:
    /// A switch, stored as 0 or 1.
    struct Switch
    {
        const char* key;
        bool isOnByDefault; ///< also if it is stored as what is no number
    };

    static constexpr Switch ShowConfirmations{"showconfirmations", true};
    static constexpr Switch EnableOnlinePresetExchange{"enableonlinepresetexchange", false};
    /// Instances made from now on have eight channels a bus.
    static constexpr Switch SurroundActivated{"SurroundActivated", false};
    /// Inputs are kept from denormal numbers.
    static constexpr Switch AntiDenormal{"AntiDenormal", true};

    explicit MPluginConfiguration(const MString& familyFolder);
    /// Of this process, in the family's folder as the environment tells of it at the first call.
    static MPluginConfiguration& Get();

    bool IsOn(const Switch& wanted);
    void Set(const Switch& changed, bool on);
    /// Code such as "en"; empty for the one of the system.
    MString GetLanguage();
    void SetLanguage(const MString& code);

    /// For keys that others own.
    MConfigurationFile& GetFile() noexcept { return file; }

private:
    MConfigurationFile file;
};
