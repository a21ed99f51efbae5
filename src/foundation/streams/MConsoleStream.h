#pragma once

#include "foundation/streams/MStdFileStream.h"

/// The standard output and input, to which the log goes. It has no file, so it has no position.
class MConsoleStream : public MStdFileStream
{
public:
    /// The one of this module.
    static MConsoleStream& Get();

    /// What the standard output does not take is lost: a log must not fail its program.
    void Write(std::span<const std::byte> bytes) override;
    /// Waits until @p buffer is full or the input ends.
    std::size_t Read(std::span<std::byte> buffer) override;
    void Flush() override;

private:
    MConsoleStream() = default;
};
