// What only this platform can show: rights, special files, names that are no text, the desktop.

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <thread>

#include <sys/stat.h>
#include <unistd.h>

#include "foundation/streams/Files.h"
#include "foundation/streams/MStdFileStream.h"
#include "tests/FileSizeLimit.h"
#include "tests/OrdinaryUser.h"
#include "tests/TemporaryFolder.h"
#include "tests/foundation/streams/StreamTest.h"

namespace
{

using Opening = MStdFileStream::Opening;

constexpr std::uint8_t SomeBytes[] = {'t', 'e', 'x', 't'};

MString NameOf(const std::filesystem::path& path)
{
    return MString::FromUTF8(path.native());
}

TEST(MStdFileStream, ReadsAFileThatMayNotBeWritten)
{
    const TemporaryFolder folder;
    folder.Write("fixed", SomeBytes);
    folder.Write("secret", SomeBytes);
    const MString name = NameOf(folder / "fixed");
    chmod(folder.GetPath().c_str(), 0555);
    chmod((folder / "fixed").c_str(), 0444);
    chmod((folder / "secret").c_str(), 0);
    {
        const OrdinaryUser user;
        MStdFileStream stream(name, Opening::Existing);
        EXPECT_EQ(Thrown([&] { stream.Write(BytesOf("new")); }),
                  "Error writing to file \"" + name.ToUTF8() + "\". Probably disk full. (0)");
        EXPECT_EQ(TextOf(ReadAll(stream)), "text");
        EXPECT_EQ(Thrown([&] { MStdFileStream(NameOf(folder / "secret"), Opening::Existing); }),
                  "File \"" + NameOf(folder / "secret").ToUTF8() +
                      "\" could not be open. Make sure it exists. (257)");
        for (const char* const refused : {"fixed", "new"})
            EXPECT_EQ(Thrown([&] { MStdFileStream(NameOf(folder / refused), Opening::Create); }),
                      "File \"" + NameOf(folder / refused).ToUTF8() +
                          "\" could not be created. Make sure there is no write-protected file "
                          "already existing. (257)");
        EXPECT_EQ(Thrown([&] { files::DeleteFile(name); }),
                  "Could not delete file \"" + name.ToUTF8() + "\". (0)");
    }
    chmod(folder.GetPath().c_str(), 0755);
}

TEST(MStdFileStream, AFullDiskShowsAtTheLatestWhenClosed)
{
    const std::string failure = "Error writing to file \"/dev/full\". Probably disk full. (0)";
    const Bytes much(1 << 20);
    MStdFileStream large("/dev/full", Opening::Existing);
    EXPECT_EQ(Thrown([&] { large.Write(much); }), failure);

    MStdFileStream flushed("/dev/full", Opening::Existing);
    flushed.Write(BytesOf("x"));
    EXPECT_EQ(Thrown([&] { flushed.Flush(); }), failure);
    Bytes buffer(10);
    EXPECT_EQ(flushed.Read(buffer), 10u) << "zeros; the failure is over";
    MStdFileStream closed("/dev/full", Opening::Existing);
    closed.Write(BytesOf("x"));
    EXPECT_EQ(Thrown([&] { closed.Close(); }), failure);
    EXPECT_EQ(Thrown([&] { closed.Flush(); }), "File stream is not initialized. (0)");
    EXPECT_EQ(Thrown(
                  []
                  {
                      MStdFileStream forgotten("/dev/full", Opening::Existing);
                      forgotten.Write(BytesOf("x"));
                  }),
              "nothing");
}

TEST(MStdFileStream, WhatIsNoFileCannotBeReadOrSought)
{
    const TemporaryFolder folder;
    const MString pipe = NameOf(folder / "pipe");
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    MStdFileStream stream(pipe, Opening::Existing);
    EXPECT_EQ(Thrown([&] { stream.Seek(0, MStream::FromStart); }),
              "Could not perform file seek. (0)");
    EXPECT_EQ(Thrown([&] { stream.GetSize(); }), "Could not perform file seek. (0)");
    EXPECT_EQ(Thrown([&] { MStdFileStream(NameOf(folder.GetPath()), Opening::Existing); }),
              "File \"" + NameOf(folder.GetPath()).ToUTF8() +
                  "\" could not be open. Make sure it exists. (257)")
        << "a folder";

    MStdFileStream memory("/proc/self/mem", Opening::Existing); // nothing is mapped at 0
    Bytes buffer(10);
    EXPECT_EQ(Thrown([&] { memory.Read(buffer); }),
              "Error reading from file \"/proc/self/mem\". (0)");
}

TEST(Files, AReplacedFileKeepsItsRightsAndALinkItsPlace)
{
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder / "far");
    folder.Write("far/file", SomeBytes);
    chmod((folder / "far/file").c_str(), 0640);
    std::filesystem::create_symlink("far/file", folder / "link");
    files::ReplaceContents(NameOf(folder / "link"), BytesOf("new"));
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "link"));
    EXPECT_EQ(folder.Read("far/file").size(), 3u);
    struct stat status = {};
    ASSERT_EQ(stat((folder / "far/file").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0640U);
    EXPECT_EQ(folder.List(), "far link");
}

TEST(Files, AFailedReplacementLeavesTheFileAndNothingElse)
{
    const TemporaryFolder folder;
    const MString name = NameOf(folder / "file");
    folder.Write("file", SomeBytes);
    {
        const FileSizeLimit limit(1000);
        EXPECT_EQ(Thrown([&] { files::ReplaceContents(name, Bytes(1001)); }),
                  "Error writing to file \"" + name.ToUTF8() + "\". Probably disk full. (0)");
        files::ReplaceContents(name, Bytes(1000));
    }
    EXPECT_EQ(folder.Read("file").size(), 1000u);
    EXPECT_EQ(folder.List(), "file");

    // Protected by itself, then by its folder.
    for (const auto& [folderRights, fileRights] :
         {std::pair(0777U, 0444U), std::pair(0555U, 0666U)})
    {
        chmod(folder.GetPath().c_str(), folderRights);
        chmod((folder / "file").c_str(), fileRights);
        const OrdinaryUser user;
        EXPECT_EQ(Thrown([&] { files::ReplaceContents(name, {}); }),
                  "File \"" + name.ToUTF8() +
                      "\" could not be created. Make sure there is no write-protected file "
                      "already existing. (257)");
    }
    chmod(folder.GetPath().c_str(), 0755);
    EXPECT_EQ(folder.Read("file").size(), 1000u);
    EXPECT_EQ(folder.List(), "file");
}

TEST(Files, FindsNamesThatAreNoTextAgain)
{
    const TemporaryFolder folder;
    const std::string bytes = "caf\xC3\xA9 \xFF\xC3(";
    folder.Write(bytes, SomeBytes);
    const std::vector<files::Entry> entries = files::ListDirectory(NameOf(folder.GetPath()));
    ASSERT_EQ(entries.size(), 1u);
    const MString name = files::PathJoin(NameOf(folder.GetPath()), entries[0].name);
    MStdFileStream stream(name, Opening::Existing);
    EXPECT_EQ(TextOf(ReadAll(stream)), "text");
    stream.Close();
    files::DeleteFile(name);
    EXPECT_EQ(folder.List(), "");
}

/// A desktop that writes down what it is asked to open.
class Desktop
{
public:
    Desktop()
    {
        std::ofstream(folder / "xdg-open") << "#!/bin/sh\nprintf '%s\\n' \"$#\" \"$1\" >" << Log()
                                           << ".new\nmv " << Log() << ".new " << Log() << "\n";
        chmod((folder / "xdg-open").c_str(), 0755);
        SetPath(folder.GetPath().string() + ":" + path);
    }
    Desktop(const Desktop&) = delete;
    Desktop& operator=(const Desktop&) = delete;
    ~Desktop() { SetPath(path); }

    static void SetPath(const std::string& newPath)
    {
        setenv("PATH", newPath.c_str(), 1); // NOLINT(concurrency-mt-unsafe): there is one thread
    }

    /// Waits for the note, which it removes.
    std::string Opened()
    {
        using namespace std::chrono_literals;
        for (int i = 0; i < 1000 && !std::filesystem::exists(Log()); ++i)
            std::this_thread::sleep_for(10ms);
        const std::vector<std::uint8_t> bytes = folder.Read("log");
        std::filesystem::remove(Log());
        return {bytes.begin(), bytes.end()};
    }

    const TemporaryFolder folder;

private:
    std::string Log() const { return (folder / "log").string(); }

    std::string path = std::getenv("PATH"); // NOLINT(concurrency-mt-unsafe)
};

TEST(Files, HandsAddressesAndFilesToTheDesktopAsOneArgument)
{
    Desktop desktop;
    const std::string file = (desktop.folder / "a 'quoted' $(file)").string();
    desktop.folder.Write("a 'quoted' $(file)", SomeBytes);
    for (const std::string& target :
         {std::string("https://example.org/?a=b&c=$(touch${IFS}pwned)'`\";"),
          std::string("HTTP://example.org"), std::string("mailto:someone@example.org"), file,
          desktop.folder.GetPath().string()})
    {
        files::Execute(MString::FromUTF8(target));
        EXPECT_EQ(desktop.Opened(), "1\n" + target + "\n");
    }
}

TEST(Files, NothingElseReachesTheDesktop)
{
    Desktop desktop;
    for (const std::string& target : std::initializer_list<std::string>{
             "", "-version", "--help", "file:///etc/passwd", "javascript:alert(1)", "https://",
             "ls", "http://a b", "http://a\n--help", "ftp://example.org", "mailto:"})
        EXPECT_EQ(Thrown([&] { files::Execute(MString::FromUTF8(target)); }),
                  "Could not execute file \"" + target + "\". (0)");
    EXPECT_EQ(desktop.folder.List(), "xdg-open");
}

TEST(Files, ANameThatLooksLikeAnOptionIsPassedAsAPath)
{
    Desktop desktop;
    desktop.folder.Write("--help", SomeBytes);
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(desktop.folder.GetPath());
    files::Execute("--help");
    std::filesystem::current_path(before);
    EXPECT_EQ(desktop.Opened(), "1\n" + (desktop.folder / "--help").string() + "\n");
}

TEST(Files, AMissingDesktopIsAFailure)
{
    const Desktop desktop;
    Desktop::SetPath("/nonexistent");
    EXPECT_EQ(Thrown([] { files::Execute("http://example.org"); }),
              "Could not execute file \"http://example.org\". (0)");
}

} // namespace
