#pragma once

#include <cstdint>
#include <memory>

#include "foundation/strings/MString.h"

/// Takes a text apart by the format that filled it:
/// MStringScanner("{0} dB", text).Get(gainDb).FieldCount() == 1.
///
/// Format and text are walked together until either ends or they differ; what was found up to there
/// counts. White space matches any white space. A placeholder takes what stands up to the next
/// character of the format, or up to white space if there is none; of its options (see
/// MStringFormatter) only "x" means something. Fields are handed out in the order of their numbers.
///
/// A handle: copies share the text and the place. One thread at a time.
class MStringScanner
{
public:
    /// @throws MException (2) as MStringFormatter does, if the scan comes as far as what is wrong.
    MStringScanner(const MString& format, const MString& input);

    /// Hands out the next field; @p target stays as it is if there is none. A field without a
    /// number gives 0.
    MStringScanner& Get(double& target);
    MStringScanner& Get(std::int64_t& target);
    /// The same, and a field without a digit is the end: it and those behind it count no more.
    MStringScanner& Get(std::int32_t& target);
    MStringScanner& Get(std::int16_t& target);
    MStringScanner& Get(std::int8_t& target);
    MStringScanner& Get(MString& target);

    /// The highest number of a field that was found, plus 1.
    int FieldCount() const noexcept;

private:
    struct Field;
    struct State;

    const Field* Next() noexcept;
    template <typename Target>
    MStringScanner& GetShort(Target& target);

    std::shared_ptr<State> state;
};
