#include "serial/ini.h"

#include <gtest/gtest.h>

namespace veldra {
namespace {

using Entries = IniFile::Entries;

TEST(IniParse, SectionsKeysAndComments) {
    auto ini = ini_parse(
        "top = level\n"
        "; a comment = not a key\n"
        "  # another\n"
        "[localization]\n"
        "Hud_Time =  Time left  \n"
        "\n"
        "Menu_Text=Line one\\nLine two {0}\n"
        "[ other ]\n"
        "k=a=b\n"
        "[localization]\n"
        "Hud_Time=Again\n");
    ASSERT_TRUE(ini);
    ASSERT_TRUE(ini->section(""));
    EXPECT_EQ(*ini->section(""), (Entries{{"top", "level"}}));
    ASSERT_TRUE(ini->section("localization"));
    // A reopened section adds to the first; a repeated key keeps its place and takes the
    // last value. Backslash sequences are left for the reader.
    EXPECT_EQ(*ini->section("localization"),
              (Entries{{"Hud_Time", "Again"}, {"Menu_Text", "Line one\\nLine two {0}"}}));
    ASSERT_TRUE(ini->section("other"));
    EXPECT_EQ(*ini->section("other"), (Entries{{"k", "a=b"}}));
    EXPECT_EQ(ini->section("missing"), nullptr);
}

TEST(IniParse, WindowsLineEndsAndByteOrderMark) {
    auto ini = ini_parse("\xEF\xBB\xBF; comment\r\n[s]\r\nkey=value\r\nlast=x");
    ASSERT_TRUE(ini);
    ASSERT_TRUE(ini->section("s"));
    EXPECT_EQ(*ini->section("s"), (Entries{{"key", "value"}, {"last", "x"}}));
}

TEST(IniParse, MalformedLinesFailTheFile) {
    EXPECT_FALSE(ini_parse("[open\nk=v\n"));
    EXPECT_FALSE(ini_parse("[s]\njust words\n"));
    EXPECT_TRUE(ini_parse(""));
}

}  // namespace
}  // namespace veldra
