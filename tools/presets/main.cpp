#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <memory>

#include "foundation/strings/FileNames.h"
#include "foundation/threads/MException.h"
#include "persistence/presets/PresetFile.h"
#include "tools/presets/CompletePresets.h"

namespace
{

int Complain(const char* text) noexcept
{
    std::fprintf(stderr, "tonvale-presets: %s\n", text);
    return EXIT_FAILURE;
}

void Run(const MString& source, const std::filesystem::path& target)
{
    const std::unique_ptr<MXMLItem> root = ReadPresetTree(source);
    if (root == nullptr || root->GetName() != PresetFile::RootName)
        throw MException("Invalid file contents. There is no element \"presets\".");
    CompletePresets(*root);
    std::filesystem::create_directories(target.parent_path());
    PresetFile(FileNameFromBytes(target.parent_path().string()),
               FileNameFromBytes(target.filename().string()))
        .Write(*root);
}

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount != 3)
        return Complain("usage: tonvale-presets SOURCE.xml FILE.xml");
    try
    {
        Run(FileNameFromBytes(arguments[1]), std::filesystem::absolute(arguments[2]));
        return EXIT_SUCCESS;
    }
    catch (const MException& failure)
    {
        return Complain(failure.text.ToUTF8().c_str());
    }
    catch (const std::exception& failure)
    {
        return Complain(failure.what());
    }
}
