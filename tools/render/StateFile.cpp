#include "tools/render/StateFile.h"

#include <cerrno>
#include <fstream>
#include <optional>
#include <span>

#include "foundation/limits.h"
#include "foundation/streams/MMemoryStream.h"
#include "foundation/xml/MXMLItem.h"
#include "foundation/xml/SettingsTree.h"
#include "tools/render/Failure.h"
#include "tools/render/PartFile.h"
#include "tools/render/ReadFile.h"

namespace
{

/// Whether it begins with the two bytes in front of deflated data. No XML does, in any encoding.
bool IsCompressed(std::span<const std::uint8_t> bytes)
{
    return bytes.size() >= 2 && bytes[0] % 16 == 8 && (bytes[0] * 256 + bytes[1]) % 31 == 0;
}

constexpr auto MaxBytes = static_cast<std::size_t>(limits::InflatedTreeBytes);

std::vector<std::uint8_t> ReadAll(const std::filesystem::path& path)
{
    std::vector<std::uint8_t> bytes = ReadFile(path, MaxBytes);
    if (bytes.size() > MaxBytes)
        throw Failure("it is larger than 128 MiB");
    return bytes;
}

/// @throws MException if @p bytes are no settings
void Parse(std::span<const std::uint8_t> bytes, MXMLItem& root)
{
    MMemoryStream stream = MMemoryStream::Refer(std::as_bytes(bytes));
    if (IsCompressed(bytes))
        root.LoadCompressed(stream);
    else
        root.Load(stream);
    if (root.GetName() != "settings")
        throw Failure("its root is \"" + root.GetName().ToUTF8() + "\", not \"settings\"");
    CheckSettingsTree(root);
}

std::vector<std::byte> GetBytes(MMemoryStream& stream)
{
    stream.Seek(0, MStream::FromStart);
    return {stream.GetData().begin(), stream.GetData().end()};
}

/// What @p load gives; its complaint with @p path in front.
template <typename Function>
auto Naming(const std::filesystem::path& path, Function load)
{
    try
    {
        return load();
    }
    catch (const MException& failure)
    {
        throw Failure("cannot load " + Quoted(path), failure.text.ToUTF8());
    }
}

/// As XML, if it is settings.
std::optional<std::vector<std::byte>> MakeReadable(std::span<const std::byte> state)
{
    const std::span bytes(reinterpret_cast<const std::uint8_t*>(state.data()), state.size());
    if (!IsCompressed(bytes))
        return std::nullopt;
    try
    {
        MXMLItem root("");
        Parse(bytes, root);
        MMemoryStream text;
        root.Save(text, false, "utf-8");
        return GetBytes(text);
    }
    catch (const MException&)
    {
        return std::nullopt;
    }
}

} // namespace

bool statefile::IsSettings(std::span<const std::byte> state)
{
    return MakeReadable(state).has_value();
}

std::vector<std::byte> statefile::LoadSettings(const std::filesystem::path& path)
{
    return Naming(path,
                  [&path]
                  {
                      MXMLItem root("");
                      Parse(ReadAll(path), root);
                      return Pack(root);
                  });
}

std::vector<std::byte> statefile::Load(const std::filesystem::path& path)
{
    return Naming(path,
                  [&path]
                  {
                      const std::vector<std::uint8_t> bytes = ReadAll(path);
                      const auto state = std::as_bytes(std::span(bytes));
                      return std::vector<std::byte>(state.begin(), state.end());
                  });
}

std::vector<std::byte> statefile::Pack(const MXMLItem& settings)
{
    MMemoryStream stream;
    settings.SaveCompressed(stream, "utf-8");
    return GetBytes(stream);
}

void statefile::Save(const std::filesystem::path& path, std::span<const std::byte> state)
{
    PartFile part(path);
    const auto readable = MakeReadable(state);
    const std::span<const std::byte> bytes = readable ? *readable : state;

    errno = 0;
    std::ofstream file(part.GetPath(), std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file)
        part.Fail(errno != 0 ? SystemReason(errno) : "it cannot be finished");
    part.Commit();
}
