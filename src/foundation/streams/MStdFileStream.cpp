#include "foundation/streams/MStdFileStream.h"

#include <cerrno>
#include <utility>

#include "foundation/streams/FileSystem.h"
#include "foundation/strings/MStringFormatter.h"
#include "foundation/threads/MException.h"

MStdFileStream::MStdFileStream(const MString& fileName, Opening opening) : name(fileName)
{
    const bool isNew = opening == Opening::Create;
    file = filesystem::OpenFile(name, isNew ? "w+b" : "r+b");
    const bool isRefused = file == nullptr && (errno == EACCES || errno == EPERM || errno == EROFS);
    if (isRefused && !isNew)
        file = filesystem::OpenFile(name, "rb");
    if (file == nullptr)
        throw MException(
            MStringFormatter(isNew ? "File \"{0}\" could not be created. Make sure there is no "
                                     "write-protected file already existing."
                                   : "File \"{0}\" could not be open. Make sure it exists.")
                .Add(name)
                .Result(),
            MException::SetUpFailure);
}

MStdFileStream::~MStdFileStream() noexcept
{
    if (file != nullptr)
        std::fclose(file);
}

void MStdFileStream::Write(std::span<const std::byte> bytes)
{
    std::FILE* const target = NeedFileFor(LastUse::Writing);
    if (std::fwrite(bytes.data(), 1, bytes.size(), target) < bytes.size())
        ThrowWriteError();
}

std::size_t MStdFileStream::Read(std::span<std::byte> buffer)
{
    std::FILE* const source = NeedFileFor(LastUse::Reading);
    const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), source);
    if (count < buffer.size())
    {
        const bool isFailed = std::ferror(source) != 0;
        std::clearerr(source); // more may have come when the next read asks
        if (isFailed)
            throw MException(
                MStringFormatter("Error reading from file \"{0}\".").Add(name).Result());
    }
    return count;
}

void MStdFileStream::Seek(std::int64_t offset, int origin)
{
    NeedFile();
    if (origin < FromStart || origin > FromEnd)
        throw MException("Invalid seek origin.", MException::BadArgument);
    SeekFile(offset, origin);
}

std::int64_t MStdFileStream::GetPosition()
{
    const std::int64_t position = filesystem::GetFilePosition(NeedFile());
    if (position < 0)
        throw MException("Could not perform file seek.");
    return position;
}

void MStdFileStream::Flush()
{
    std::FILE* const target = NeedFile();
    if (lastUse == LastUse::Writing && std::fflush(target) != 0)
        ThrowWriteError();
}

bool MStdFileStream::EndOfStream()
{
    return GetPosition() >= GetSize();
}

void MStdFileStream::Truncate()
{
    const std::int64_t position = GetPosition();
    // Also after reading: what has been read ahead is about to go.
    if (std::fflush(file) != 0 || !filesystem::TruncateFile(file, position))
        ThrowWriteError();
    SeekFile(position, FromStart);
}

std::int64_t MStdFileStream::GetSize()
{
    const std::int64_t position = GetPosition();
    SeekFile(0, FromEnd);
    const std::int64_t size = GetPosition();
    SeekFile(position, FromStart);
    return size;
}

void MStdFileStream::Close()
{
    if (std::FILE* const closed = std::exchange(file, nullptr);
        closed != nullptr && std::fclose(closed) != 0)
        ThrowWriteError();
}

std::FILE* MStdFileStream::NeedFile() const
{
    if (file == nullptr)
        throw MException("File stream is not initialized.");
    return file;
}

std::FILE* MStdFileStream::NeedFileFor(LastUse use)
{
    NeedFile();
    if (lastUse != use && lastUse != LastUse::Neither)
        SeekFile(0, FromCurrent);
    lastUse = use;
    return file;
}

void MStdFileStream::SeekFile(std::int64_t offset, int origin)
{
    if (!filesystem::SeekFile(file, offset, origin))
        throw MException("Could not perform file seek.");
    lastUse = LastUse::Neither;
}

void MStdFileStream::ThrowWriteError() const
{
    if (file != nullptr)
        std::clearerr(file); // or the next read would be taken for a failure
    throw MException(
        MStringFormatter("Error writing to file \"{0}\". Probably disk full.").Add(name).Result());
}
