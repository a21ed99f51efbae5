#pragma once

#include <string>
#include <string_view>

#include "tests/EnvironmentVariable.h"
#include "tests/TemporaryFolder.h"

/// A folder that stands for all data of the user, so that no test touches the real ones.
struct DataUnderTest
{
    /// @p name is below the folder; what leads to it is made.
    void Write(const std::string& name, std::string_view text) const
    {
        std::filesystem::create_directories((folder / name).parent_path());
        folder.Write(name,
                     std::span(reinterpret_cast<const std::uint8_t*>(text.data()), text.size()));
    }

    TemporaryFolder folder;
    EnvironmentVariable data{"QUILLFERN_DATA", folder.GetPath().string().c_str()};
};
