#pragma once

#include <string>

#include "tools/render/RenderOptions.h"

/// Reads the texts behind options. Each takes the option's name for its complaint.
/// @throws MException that says which text is wrong and how.
namespace optiontexts
{

/// A whole number from @p min to @p max.
int ReadInteger(const std::string& option, const std::string& text, int min, int max);
/// A number above 0, at most @p max.
double ReadPositive(const std::string& option, const std::string& text, double max);
/// NAME=TEXT.
RenderOptions::Setting ReadSetting(const std::string& option, const std::string& text);
/// NAME=X, a number.
RenderOptions::Setting ReadSetting01(const std::string& option, const std::string& text);
/// NAME:T=V,T=V with rising T, in seconds, and V from 0.0 to 1.0.
RenderOptions::Automation ReadAutomation(const std::string& option, const std::string& text);
/// X,Y, each 0.0 to 1.0.
RenderOptions::Place ReadPlace(const std::string& option, const std::string& text);
/// T=X:Y,T=X:Y with rising T, in seconds, and X and Y from 0.0 to 1.0.
std::vector<RenderOptions::PlaceInTime> ReadPath(const std::string& option,
                                                 const std::string& text);
/// Case does not matter.
MChannelMode ReadChannelMode(const std::string& option, const std::string& text);

} // namespace optiontexts
