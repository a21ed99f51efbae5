#include "tools/render/Failure.h"

#include <system_error>

MException Failure(const std::string& text)
{
    return MException(MString::FromUTF8(text), MException::BadArgument);
}

MException Failure(const std::string& subject, const std::string& text)
{
    return Failure(subject + ": " + text);
}

std::string SystemReason(int errorNumber)
{
    return std::generic_category().message(errorNumber);
}

std::string Quoted(const std::filesystem::path& path)
{
    std::string quoted(1, '"');
    quoted += path.string();
    return quoted += '"';
}
