#pragma once

#include <cstdint>

class MString;

/// Numbers out of text. All return false, and leave @p number alone, where there is none; whole
/// numbers beyond 64 bits wrap.
namespace numberreading
{

/// The number that @p text begins with.
bool Read(const MString& text, double& number);
bool Read(const MString& text, std::int64_t& number);

/// The number that @p text holds in the place of the one argument of @p format.
bool Scan(const MString& format, const MString& text, double& number);
bool Scan(const MString& format, const MString& text, std::int64_t& number);

} // namespace numberreading
