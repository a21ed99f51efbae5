#pragma once

#include <string>

struct MPluginParameterRecord;

/// What a parameter shows at the normalised value @p value01, which it does not take.
std::string ShownAt(const MPluginParameterRecord& record, double value01);

/// Sets @p record from a display text. The parser of a record only looks at the number; this also
/// refuses numbers in another unit, fractions of whole steps and values outside the range.
/// @throws MException that tells what is wrong with @p text; the value then stays.
void ReadParameterText(MPluginParameterRecord& record, const std::string& text);
