#pragma once

#include <cstddef>
#include <unordered_map>

#include "foundation/modules/MLocale.h"
#include "foundation/strings/MString.h"

/// The texts of one language by the English ones, letter by letter the same. What users read is
/// translated where it is shown and nowhere else: never names and keys that are stored, what hosts
/// are told, or the texts of exceptions. The GUI thread alone.
class MTranslation
{
public:
    /// Takes the texts from the resource "locale/xx.xml", with the code of @p language; without
    /// such a resource there are none, as for English. Numbered arguments have to be the same in
    /// both texts, or the entry does not count.
    /// @throws MException (256) for a resource that is no translation to this language; the texts
    /// before then stay
    void Load(MLocale::Language language);
    /// The text itself if it has no translation.
    MString Translate(const MString& english) const;

private:
    struct Hash
    {
        std::size_t operator()(const MString& text) const noexcept;
    };
    struct IsSame
    {
        bool operator()(const MString& a, const MString& b) const noexcept;
    };

    std::unordered_map<MString, MString, Hash, IsSame> texts;
};

/// Changes the language of Translate; as MTranslation::Load. What is open has to be shown anew.
void LoadTranslation(MLocale::Language language);
/// In the language that was loaded last; English until then.
MString Translate(const MString& english);
