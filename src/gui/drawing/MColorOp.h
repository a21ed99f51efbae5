#pragma once

#include "foundation/strings/MString.h"

/// How a colour is combined with the pixel that is there; ColorOperations.h has the arithmetic.
/// Other values may come from files and are ignored like None.
enum class MColorOp
{
    None, ///< draws nothing
    Alphablend,
    Modulate,
    Copy,
    Overlay,
    Color,
    Invert,
    Add,
    Subtract,
    Lighten,
    Darken,
    Difference,
    IncContrast,
    DecContrast,
    LightenByContrast,
    DarkenByContrast,
    AddAndOverflow,
};

/// How a bitmap covers an area larger than itself; see FillBitmap.
enum class MBitmapFill
{
    Stretch,  ///< scaled both ways
    HPattern, ///< scaled vertically, repeated along x
    VPattern, ///< scaled horizontally, repeated along y
    Pattern,  ///< repeated both ways
};

/// Where something stands along one axis.
enum class MAlignment
{
    Left = 0,
    Top = 0,
    Center = 1,
    Right = 2,
    Bottom = 2,
};

/// By name, as MString::Compare compares.
/// @throws MException (256) "Invalid MColorOp identifier to parse ({0})." and the like
MColorOp ParseColorOp(const MString& name);
MBitmapFill ParseBitmapFill(const MString& name);
MAlignment ParseHorizontalAlignment(const MString& name); ///< "Left", "Center", "Right"
MAlignment ParseVerticalAlignment(const MString& name);   ///< "Top", "Center", "Bottom"

/// The name that ParseColorOp takes; empty for a value that is none.
MString NameOf(MColorOp op) noexcept;
MString NameOf(MBitmapFill fill) noexcept;
