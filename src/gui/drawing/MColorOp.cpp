#include "gui/drawing/MColorOp.h"

#include <array>
#include <cstddef>
#include <span>

#include "foundation/strings/MStringFormatter.h"
#include "foundation/threads/MException.h"

namespace
{

constexpr std::array ColorOpNames{"None",
                                  "Alphablend",
                                  "Modulate",
                                  "Copy",
                                  "Overlay",
                                  "Color",
                                  "Invert",
                                  "Add",
                                  "Subtract",
                                  "Lighten",
                                  "Darken",
                                  "Difference",
                                  "IncContrast",
                                  "DecContrast",
                                  "LightenByContrast",
                                  "DarkenByContrast",
                                  "AddAndOverflow"};
constexpr std::array BitmapFillNames{"Stretch", "HPattern", "VPattern", "Pattern"};
constexpr std::array HorizontalNames{"Left", "Center", "Right"};
constexpr std::array VerticalNames{"Top", "Center", "Bottom"};

/// The value of @p name, whose place among @p names it is.
template <typename Enum>
Enum Parse(const MString& name, std::span<const char* const> names, const char* failure)
{
    for (std::size_t i = 0; i < names.size(); ++i)
        if (name == names[i])
            return static_cast<Enum>(i);
    throw MException(MStringFormatter(failure).Add(name).Result(), MException::BadData);
}

template <typename Enum>
MString NameAt(Enum value, std::span<const char* const> names) noexcept
{
    const auto index = static_cast<std::size_t>(value);
    return index < names.size() ? MString(names[index]) : MString();
}

} // namespace

MColorOp ParseColorOp(const MString& name)
{
    return Parse<MColorOp>(name, ColorOpNames, "Invalid MColorOp identifier to parse ({0}).");
}

MBitmapFill ParseBitmapFill(const MString& name)
{
    return Parse<MBitmapFill>(name, BitmapFillNames,
                              "Invalid MBitmapFill identifier to parse ({0}).");
}

MAlignment ParseHorizontalAlignment(const MString& name)
{
    return Parse<MAlignment>(name, HorizontalNames,
                             "Invalid MAlignment identifier to parse ({0}).");
}

MAlignment ParseVerticalAlignment(const MString& name)
{
    return Parse<MAlignment>(name, VerticalNames, "Invalid MAlignment identifier to parse ({0}).");
}

MString NameOf(MColorOp op) noexcept
{
    return NameAt(op, ColorOpNames);
}

MString NameOf(MBitmapFill fill) noexcept
{
    return NameAt(fill, BitmapFillNames);
}
