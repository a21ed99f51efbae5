#include "tests/tools/RenderProgram.h"

#include <algorithm>
#include <csignal>
#include <stdexcept>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

std::vector<std::string> CommandLine(std::vector<std::string> start,
                                     const std::vector<std::string>& arguments)
{
    start.emplace_back(TONVALE_RENDER_PROGRAM);
    start.insert(start.end(), arguments.begin(), arguments.end());
    return start;
}

std::string ReadAll(std::FILE* file)
{
    std::rewind(file);
    std::string text;
    for (int character = std::fgetc(file); character != EOF; character = std::fgetc(file))
        text += static_cast<char>(character);
    return text;
}

} // namespace

RenderProgram::Result RenderProgram::Run(const std::filesystem::path& folder,
                                         const std::vector<std::string>& arguments)
{
    return RenderProgram(folder, arguments).Wait();
}

RenderProgram::Result RenderProgram::RunLimited(const std::filesystem::path& folder, int kibibytes,
                                                const std::vector<std::string>& arguments)
{
    // bash counts in units of 1024 bytes. A write beyond fails, as on a full disk, once the signal
    // that would end the program is ignored. Where coverage is counted, it may complain elsewhere.
    const std::string script = "trap '' XFSZ; export GCOV_ERROR_FILE=/dev/null; ulimit -f " +
                               std::to_string(kibibytes) + "; exec \"$0\" \"$@\"";
    return RenderProgram(folder, CommandLine({"/bin/bash", "-c", script}, arguments), 0).Wait();
}

RenderProgram::RenderProgram(const std::filesystem::path& folder,
                             const std::vector<std::string>& arguments)
    : RenderProgram(folder, CommandLine({}, arguments), 0)
{
}

RenderProgram::RenderProgram(const std::filesystem::path& folder,
                             std::vector<std::string> commandLine, int /*tag*/)
    : output(std::tmpfile()),
      errors(std::tmpfile())
{
    std::vector<char*> pointers(commandLine.size() + 1, nullptr);
    std::ranges::transform(commandLine, pointers.begin(),
                           [](std::string& argument) { return argument.data(); });

    posix_spawn_file_actions_t actions{};
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addchdir_np(&actions, folder.c_str());
    posix_spawn_file_actions_adddup2(&actions, fileno(output.get()), STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, fileno(errors.get()), STDERR_FILENO);
    const int error =
        posix_spawn(&process, pointers[0], &actions, nullptr, pointers.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0)
        throw std::runtime_error("the program cannot be started");
}

void RenderProgram::Signal(int number) const
{
    kill(process, number);
}

RenderProgram::Result RenderProgram::Wait()
{
    int status = 0;
    waitpid(process, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadAll(output.get()),
            ReadAll(errors.get())};
}
