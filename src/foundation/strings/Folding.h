#pragma once

/// The first character that may have a base letter.
constexpr char16_t FirstFolded = 0x00C0;

/// The letter that remains of @p character without its diacritics ("é" gives "e"), in the same
/// case; a character that has none stays.
char16_t FoldToBaseLetter(char16_t character) noexcept;
