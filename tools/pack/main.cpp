#include <cstdio>
#include <exception>
#include <span>

#include "foundation/streams/MStdFileStream.h"
#include "foundation/strings/FileNames.h"
#include "foundation/threads/MException.h"
#include "foundation/xml/MResourcePack.h"
#include "tools/pack/PackFolder.h"

namespace
{

constexpr int ExitSuccess = 0;
constexpr int ExitFailure = 2;

int Complain(const char* text) noexcept
{
    std::fprintf(stderr, "tonvale-pack: %s\n", text);
    return ExitFailure;
}

void Run(std::span<char*> folders, const MString& fileName)
{
    MResourcePack pack;
    for (const char* folder : folders)
        PackFolder(pack, FileNameFromBytes(folder));
    MStdFileStream file(fileName, MStdFileStream::Opening::Create);
    pack.Save(file);
    file.Close();
}

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount < 3)
        return Complain("usage: tonvale-pack FOLDER... FILE");
    try
    {
        const std::span all(arguments, static_cast<std::size_t>(argumentCount));
        Run(all.subspan(1, all.size() - 2), FileNameFromBytes(all.back()));
        return ExitSuccess;
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
