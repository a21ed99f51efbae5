#pragma once

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <sys/types.h>

/// tonvale-render as users run it.
class RenderProgram
{
public:
    struct Result
    {
        int exitCode; ///< -1 if a signal ended it
        std::string output;
        std::string errors;
    };

    /// Runs it in @p folder with @p arguments and waits for its end.
    static Result Run(const std::filesystem::path& folder,
                      const std::vector<std::string>& arguments);
    /// The same where files may have at most @p kibibytes.
    static Result RunLimited(const std::filesystem::path& folder, int kibibytes,
                             const std::vector<std::string>& arguments);

    /// Starts it.
    RenderProgram(const std::filesystem::path& folder, const std::vector<std::string>& arguments);

    void Signal(int number) const;
    Result Wait();

private:
    struct Closer
    {
        void operator()(std::FILE* open) const { std::fclose(open); }
    };
    using File = std::unique_ptr<std::FILE, Closer>;

    RenderProgram(const std::filesystem::path& folder, std::vector<std::string> commandLine, int);

    File output;
    File errors;
    pid_t process = 0;
};
