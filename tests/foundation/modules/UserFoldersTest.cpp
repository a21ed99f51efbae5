#include "foundation/modules/UserFolders.h"

#include <gtest/gtest.h>

namespace
{

struct Case
{
    std::string_view text;
    const char* folder;
};

using namespace std::string_view_literals;

constexpr Case Cases[] = {
    {R"(XDG_DESKTOP_DIR="$HOME/Bureau")", "/home/u/Bureau"},
    {R"(XDG_DESKTOP_DIR="/srv/My \"desk\" \$1")", "/srv/My \"desk\" $1"},
    {"# comment\n \tXDG_DESKTOP_DIR=\"/a\" # here\r\n", "/a"},
    {"XDG_DESKTOP_DIR=\"/a\"\nXDG_DOCUMENTS_DIR=\"/b\"\nXDG_DESKTOP_DIR=\"/c\"\n", "/c"},
    {"XDG_DESKTOP_DIR=\"/a\"\nXDG_DESKTOP_DIR=\"b\"\n", "/a"},
    {R"(XDG_DESKTOP_DIR="$HOME")", "/home/u"},
    {R"(XDG_DESKTOP_DIR="$HOME/")", "/home/u/"},
    {R"(#XDG_DESKTOP_DIR="/a")", ""},
    {R"(XDG_DESKTOPS_DIR="/a")", ""},
    {R"(XDG_DESKTOP_DIR="$HOMES/a")", ""},
    {R"(XDG_DESKTOP_DIR="a")", ""},
    {R"(XDG_DESKTOP_DIR="")", ""},
    {R"(XDG_DESKTOP_DIR=/a)", ""},
    {R"(XDG_DESKTOP_DIR="/a)", ""},
    {R"(XDG_DESKTOP_DIR="/a\)", ""},
    {R"(XDG_DESKTOP_DIR="/a"b)", ""},
    {R"(XDG_DESKTOP_DIR="/a/$USER")", ""},
    {R"(XDG_DESKTOP_DIR="/a/`id`")", ""},
    {"XDG_DESKTOP_DIR=\"/a\0b\""sv, ""},
    {"XDG_DESKTOP_DIR=\"/a\\\0b\""sv, ""},
    {"XDG_DESKTOP_DIR=\"/a\nb\"", ""},
    {"", ""},
};

TEST(UserFolders, TakeNothingButPlainAssignments)
{
    for (const Case& row : Cases)
        EXPECT_EQ(FindUserFolder(row.text, "DESKTOP", "/home/u"), row.folder) << row.text;
}

} // namespace
