#pragma once

#include <cstddef>
#include <cstdint>

/// How much of what strangers send is read before it is refused. They only bound memory, depth and
/// time: honest data stay far below. What goes beyond throws MException (256), unless told, before
/// anything of an old state is touched.
namespace limits
{

/// Code 2, "String is too long."
constexpr std::int32_t TextCharacters = 1 << 30;

/// Numbers of arguments in a format are 0 to 31, code 2.
constexpr int FormatArguments = 32;

/// Of an item tree, when inflated.
constexpr std::int64_t InflatedTreeBytes = std::int64_t{128} << 20;

constexpr int XMLDepth = 512;
constexpr int XMLItems = 1'000'000;
constexpr std::size_t XMLAttributes = 4096;            ///< of one element
constexpr std::size_t XMLNameCharacters = 4096;        ///< of an element or attribute
constexpr std::size_t XMLTextCharacters = 64UL << 20U; ///< of an attribute value or an item

/// Of the attachment of a resource pack; the tree before it may be as long as the source.
constexpr std::int64_t AttachmentBytes = std::int64_t{512} << 20;

/// "Invalid file contents. Too many points in a curve."
constexpr int CurvePoints = 65'536;

/// Parameters that one modulator or multiparameter drives. "Invalid file contents. Too many
/// targets."
constexpr int Targets = 4096;

/// Of a bitmap or mask. "Bitmap is too large."
constexpr int BitmapSide = 32'768;
constexpr std::int64_t BitmapPixels = std::int64_t{64} << 20;

/// Fonts beyond these are passed over.
constexpr std::int64_t FontFileBytes = std::int64_t{256} << 20;
constexpr int FontFiles = 16'384; ///< of all folders
constexpr int FontFaces = 64;     ///< of one file

} // namespace limits
