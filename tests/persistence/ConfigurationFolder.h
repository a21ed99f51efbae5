#pragma once

#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "foundation/threads/MException.h"
#include "tests/TemporaryFolder.h"

/// A folder for settings that is made by the first of them, and its files as texts.
class ConfigurationFolder : public TemporaryFolder
{
public:
    MString GetName() const { return MString::FromUTF8((*this / "f").generic_string()); }
    std::string ReadText(const std::string& name) const
    {
        const std::vector<std::uint8_t> bytes = Read("f/" + name);
        return {bytes.begin(), bytes.end()};
    }
    void WriteText(const std::string& name, std::string_view text) const
    {
        std::filesystem::create_directory(*this / "f");
        Write("f/" + name, {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
    }
};

/// The text that @p action throws; "nothing" if it does not.
template <typename Action>
std::string Thrown(Action&& action)
{
    try
    {
        action();
    }
    catch (const MException& failure)
    {
        return failure.text.ToUTF8();
    }
    return "nothing";
}
