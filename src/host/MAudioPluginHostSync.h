#pragma once

#include <cstdint>

#include "foundation/strings/MString.h"
#include "foundation/threads/MEventTarget.h"
#include "foundation/threads/MRelaxed.h"

class MXMLItem;

/// How a cycle follows the host's clock: its length, and where in it the song begins. It may
/// receive events, and its end takes it off all of them. Any thread reads and writes the fields.
class MAudioPluginHostSync : public MEventTarget
{
public:
    static constexpr int LengthCount = 27; ///< nine lengths, each plain, dotted and in triplets
    static constexpr int DefaultLength = 15;

    ~MAudioPluginHostSync() override = default;

    /// "1/4", "1/4D" and so on, from the longest down by threes; empty outside 0 to LengthCount
    /// - 1.
    static MString GetLengthName(int index) noexcept;
    /// -1 for a name of none.
    static int FindLength(const MString& name) noexcept;

    /// Cycles in four quarters.
    double GetSyncLength() const noexcept;

    /// Writes all fields to @p item.
    void Store(MXMLItem& item) const;
    /// What is missing or unknown becomes the default.
    void Load(MXMLItem& item);

    MRelaxed<bool> Enabled = false;
    MRelaxed<std::int32_t> Length = DefaultLength; ///< index; others count as the default
    MRelaxed<double> Phase = 0.0;                  ///< 0.0 to 1.0, added to the song's
};
