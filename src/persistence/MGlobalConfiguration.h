#pragma once

#include "persistence/MConfigurationFile.h"

/// What the user has settled for each product of the family, in an item of the product's name in
/// "GlobalConfiguration.xml". Threads and failures as of MConfigurationFile.
class MGlobalConfiguration
{
public:
    /// Of an editor, in units of the layout.
    struct Size
    {
        int width;
        int height;

        bool operator==(const Size&) const = default;
    };

    static constexpr Size FirstDefaultSize{450, 100};
    static constexpr int MaxSize = 32767; ///< of a side; a window system knows no larger ones

    explicit MGlobalConfiguration(const MString& familyFolder);
    /// Of this process, in the family's folder as the environment tells of it at the first call.
    static MGlobalConfiguration& Get();

    /// Which new instances of @p product begin with; FirstDefaultSize unless two sides of 1 to
    /// MaxSize are stored.
    Size GetDefaultSize(const MString& product);
    void SetDefaultSize(const MString& product, const Size& size);

private:
    MConfigurationFile file;
};
