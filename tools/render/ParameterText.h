#pragma once

#include <string>

struct PluginParameter;

/// Sets @p value from a display text. Parameters themselves only look at the number; this also
/// refuses numbers in another unit, fractions of whole steps and values outside the range.
/// @throws MException that tells what is wrong with @p text; the value then stays.
void ReadParameterText(const PluginParameter& value, const std::string& text);
