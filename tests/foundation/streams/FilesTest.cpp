#include "foundation/streams/Files.h"

#include "tests/TemporaryFolder.h"
#include "tests/foundation/streams/StreamTest.h"

namespace
{

constexpr std::uint8_t SomeBytes[] = {'t', 'e', 'x', 't'};

/// A temporary folder as texts.
class Folder : public TemporaryFolder
{
public:
    MString Name(const std::string& name) const
    {
        return MString::FromUTF8((*this / name).generic_string());
    }
};

TEST(Files, ReplacesTheContentsOfAFile)
{
    const Folder folder;
    const MString name = folder.Name("caf\xC3\xA9");
    files::Stamp before = files::GetStamp(name);
    EXPECT_EQ(before.size, -1);
    for (const std::string text : {"first", "other", "", "longer than all before"})
    {
        files::ReplaceContents(name, BytesOf(text));
        const std::vector<std::uint8_t> read = folder.Read("caf\xC3\xA9");
        EXPECT_EQ(std::string(read.begin(), read.end()), text);
        EXPECT_EQ(folder.List(), "caf\xC3\xA9");
        const files::Stamp after = files::GetStamp(name);
        EXPECT_NE(after, before) << text;
        EXPECT_EQ(after, files::GetStamp(name));
        before = after;
    }
    for (const char* const refused : {"", "missing/new"})
        EXPECT_EQ(Thrown([&] { files::ReplaceContents(folder.Name(refused), {}); }),
                  "File \"" + folder.Name(refused).ToUTF8() +
                      "\" could not be created. Make sure there is no write-protected file "
                      "already existing. (257)");
    EXPECT_EQ(folder.List(), "caf\xC3\xA9");
}

TEST(Files, CreatesFindsRenamesAndDeletes)
{
    const Folder folder;
    files::CreatePath(folder.Name("a/b/c"));
    files::CreatePath(folder.Name("a/b/c/"));
    folder.Write("a/old", SomeBytes);
    folder.Write("a/b/place", {});
    EXPECT_TRUE(files::FileExists(folder.Name("a/old")));
    EXPECT_FALSE(files::FileExists(folder.Name("a/b"))) << "a folder";
    EXPECT_FALSE(files::FileExists(folder.Name("a/new")));

    files::RenameFile(folder.Name("a/old"), folder.Name("a/b/place"));
    EXPECT_FALSE(files::FileExists(folder.Name("a/old")));
    EXPECT_EQ(folder.Read("a/b/place").size(), 4u);

    files::DeleteFile(folder.Name("a/b/place"));
    files::RemoveDirectory(folder.Name("a/b/c"));
    files::RemoveDirectory(folder.Name("a/b"));
    EXPECT_EQ(folder.List(), "a");
}

TEST(Files, FailuresNameTheFile)
{
    const Folder folder;
    folder.Write("file", SomeBytes);
    files::CreatePath(folder.Name("full/inner"));
    struct Case
    {
        const char* name;
        void (*use)(const MString&);
        std::string before, behind;
    };
    const auto list = [](const MString& name) { files::ListDirectory(name); };
    const Case cases[] = {
        {"file/folder", files::CreatePath, "Could not create path \"", "\"."},
        {"file", files::CreatePath, "Could not create path \"", "\"."},
        {"none", files::DeleteFile, "Could not delete file \"", "\"."},
        {"full/inner", files::DeleteFile, "Could not delete file \"", "\"."},
        {"none", files::RemoveDirectory, "Could not remove directory \"", "\"."},
        {"file", files::RemoveDirectory, "Could not remove directory \"", "\"."},
        {"full", files::RemoveDirectory, "Could not remove directory \"", "\"."},
        {"none", list, "Could not access path \"", "\" to get file list."},
        {"file", list, "Could not access path \"", "\" to get file list."},
        {"none", files::Execute, "Could not execute file \"", "\"."},
    };
    for (const Case& row : cases)
    {
        const MString name = folder.Name(row.name);
        EXPECT_EQ(Thrown([&] { row.use(name); }), row.before + name.ToUTF8() + row.behind + " (0)");
    }
    const MString from = folder.Name("none");
    const MString to = folder.Name("there");
    EXPECT_EQ(Thrown([&] { files::RenameFile(from, to); }),
              "Could not rename file \"" + from.ToUTF8() + "\" to \"" + to.ToUTF8() + "\". (0)");
    EXPECT_EQ(folder.List(), "file full");
    EXPECT_EQ(folder.Read("file").size(), 4u);
}

TEST(Files, ListsFilesAndFolders)
{
    const Folder folder;
    for (const char* const name : {"b.xml", "a b", ".hidden", "\xC3\xA9"})
        folder.Write(name, {});
    files::CreatePath(folder.Name("c"));
    std::string listed;
    for (const files::Entry& entry : files::ListDirectory(folder.Name("")))
        listed += entry.name.ToUTF8() + (entry.isFolder ? "/ " : " ");
    EXPECT_EQ(listed, ".hidden a b b.xml c/ \xC3\xA9 ");
    EXPECT_TRUE(files::ListDirectory(folder.Name("c")).empty());
}

TEST(Files, JoinsWithOneSeparator)
{
    struct Case
    {
        const char *path, *name, *expected;
    };
    constexpr Case Cases[] = {
        {"a", "b", "a/b"},     {"a/", "b", "a/b"}, {"a", "/b", "a/b"},
        {"a//", "//b", "a/b"}, {"", "b", "b"},     {"a", "", "a"},
        {"/", "b", "/b"},      {"", "", ""},       {"/a/b", "c/d", "/a/b/c/d"},
    };
    for (const Case& row : Cases)
    {
        const std::filesystem::path joined = files::PathJoin(row.path, row.name).ToUTF8();
        EXPECT_EQ(joined.generic_string(), row.expected) << row.path << " and " << row.name;
    }
}

} // namespace
