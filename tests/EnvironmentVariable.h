#pragma once

#include <cstdlib>
#include <optional>
#include <string>

/// Changes a variable of this process as long as it lives; null takes the variable away.
class EnvironmentVariable
{
public:
    EnvironmentVariable(const char* variable, const char* value) : name(variable)
    {
        const char* const present = std::getenv(name); // NOLINT(concurrency-mt-unsafe)
        if (present != nullptr)
            before = present;
        Set(value);
    }
    ~EnvironmentVariable() { Set(before ? before->c_str() : nullptr); }
    EnvironmentVariable(const EnvironmentVariable&) = delete;
    EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;

private:
    void Set(const char* value) const
    {
#ifdef _WIN32
        _putenv_s(name, value != nullptr ? value : "");
#else  // NOLINTBEGIN(concurrency-mt-unsafe)
        if (value != nullptr)
            setenv(name, value, 1);
        else
            unsetenv(name);
#endif // NOLINTEND(concurrency-mt-unsafe)
    }

    const char* name;
    std::optional<std::string> before;
};
