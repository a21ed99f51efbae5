#include <algorithm>
#include <cstdio>
#include <exception>
#include <iostream>
#include <new>
#include <sstream>
#include <string>

#include "foundation/threads/MException.h"
#include "tools/render/Failure.h"
#include "tools/render/InstallPresets.h"
#include "tools/render/Interruption.h"
#include "tools/render/PresetCatalogue.h"
#include "tools/render/RenderOptions.h"
#include "tools/render/Renderer.h"

namespace
{

constexpr int ExitSuccess = 0;
constexpr int ExitFailure = 2;

void Run(const RenderOptions& options)
{
    if (options.answer)
    {
        std::cout << *options.answer;
        return;
    }
    if (options.installPresets)
        InstallPresets(*options.installPresets, std::cout);
    if (options.isPresetList)
        PresetCatalogue(options.presetsFile).List(std::cout);
    if (options.IsPresetsOnly())
        return;
    interruption::Install();
    // Nothing but the complaint is told of a run that fails.
    std::ostringstream report;
    Renderer(options).Run(report);
    std::cout << report.str();
}

/// One line, whatever the names in it contain.
int Complain(std::string text) noexcept
{
    std::ranges::replace_if(
        text, [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; }, '?');
    std::fprintf(stderr, "tonvale-render: %s\n", text.c_str());
    return ExitFailure;
}

} // namespace

int main(int argumentCount, char** arguments)
{
    try
    {
        Run(RenderOptions::Parse(argumentCount, arguments));
        if (!std::cout.flush())
            throw Failure("the report cannot be written to the standard output");
        return ExitSuccess;
    }
    catch (const MException& failure)
    {
        return Complain(failure.text.ToUTF8());
    }
    catch (const std::bad_alloc&)
    {
        return Complain("there is not enough memory");
    }
    catch (const std::exception& failure)
    {
        return Complain(failure.what());
    }
}
