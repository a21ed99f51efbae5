#pragma once

#include <random>
#include <string>
#include <string_view>

#include "foundation/xml/MMLParser.h"
#include "foundation/xml/MXMLItem.h"

/// One line for a whole tree: name, attributes as " name=[value]", text in round brackets, subitems
/// in braces.
std::string Outline(const MXMLItem& item);

/// The outline of the tree that @p source holds, or the text of the failure.
std::string Parsed(std::string_view source);
std::string ParsedWithin(const MMLLimits& limits, std::string_view source);

/// Fills @p item with attributes, texts and subitems of any characters that a file can carry.
void MakeRandomTree(MXMLItem& item, std::mt19937& random, int depth = 3);
