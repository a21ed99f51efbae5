#pragma once

#include <cstdio>

#include "foundation/streams/MStream.h"

/// A file on disk, through the buffer of the C library: a full disk shows in Flush and Close at the
/// latest. Failures of an open stream throw MException (0): "File stream is not initialized.",
/// "Error writing to file \"{0}\". Probably disk full.", "Error reading from file \"{0}\".",
/// "Could not perform file seek.".
class MStdFileStream : public MStream
{
public:
    enum class Opening
    {
        Existing, ///< to read, and to write where rights allow
        Create,   ///< empty, also in the place of a present file
    };

    /// Without a file.
    MStdFileStream() = default;
    /// @throws MException (257) "File \"{0}\" could not be open. Make sure it exists." or "File
    /// \"{0}\" could not be created. Make sure there is no write-protected file already existing.".
    MStdFileStream(const MString& fileName, Opening opening);
    /// Closes the file and keeps silent about what could not be written any more; who wrote calls
    /// Close to know.
    ~MStdFileStream() noexcept override;
    MStdFileStream(const MStdFileStream&) = delete;
    MStdFileStream& operator=(const MStdFileStream&) = delete;

    void Write(std::span<const std::byte> bytes) override;
    std::size_t Read(std::span<std::byte> buffer) override;
    /// A position beyond the end is allowed; a write there fills the gap with zeros.
    void Seek(std::int64_t offset, int origin) override;
    std::int64_t GetPosition() override;
    void Flush() override;
    bool EndOfStream() override;
    void Truncate() override;
    std::int64_t GetSize() override;
    /// Does nothing without a file, which there is none afterwards even if this throws.
    void Close() override;

private:
    enum class LastUse
    {
        Neither,
        Reading,
        Writing
    };

    std::FILE* NeedFile() const;
    /// The C library wants a seek between reading and writing.
    std::FILE* NeedFileFor(LastUse use);
    void SeekFile(std::int64_t offset, int origin);
    [[noreturn]] void ThrowWriteError() const;

    std::FILE* file = nullptr;
    MString name;
    LastUse lastUse = LastUse::Neither;
};
