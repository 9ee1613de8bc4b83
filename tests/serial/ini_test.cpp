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
    ASSERT_TRUE(ini.section(""));
    EXPECT_EQ(*ini.section(""), (Entries{{"top", "level"}}));
    ASSERT_TRUE(ini.section("localization"));
    // A reopened section adds to the first; a repeated key keeps its place and takes the
    // last value. Backslash sequences are left for the reader.
    EXPECT_EQ(*ini.section("localization"),
              (Entries{{"Hud_Time", "Again"}, {"Menu_Text", "Line one\\nLine two {0}"}}));
    ASSERT_TRUE(ini.section("other"));
    EXPECT_EQ(*ini.section("other"), (Entries{{"k", "a=b"}}));
    EXPECT_EQ(ini.section("missing"), nullptr);
}

TEST(IniParse, WindowsLineEndsAndByteOrderMark) {
    auto ini = ini_parse("\xEF\xBB\xBF; comment\r\n[s]\r\nkey=value\r\nlast=x");
    ASSERT_TRUE(ini.section("s"));
    EXPECT_EQ(*ini.section("s"), (Entries{{"key", "value"}, {"last", "x"}}));
}

TEST(IniParse, StrayLinesAreSkippedAndListedWithTheirLineNumbers) {
    const IniFile ini = ini_parse("[s]\nk=v\n[open\njust words\n=no key\nafter=1\n");
    ASSERT_TRUE(ini.section("s"));
    EXPECT_EQ(*ini.section("s"), (Entries{{"k", "v"}, {"after", "1"}}));
    ASSERT_EQ(ini.skipped_lines.size(), 3u);
    EXPECT_EQ(ini.skipped_lines[0].line, 3u);
    EXPECT_EQ(ini.skipped_lines[0].text, "[open");
    EXPECT_EQ(ini.skipped_lines[1].line, 4u);
    EXPECT_EQ(ini.skipped_lines[2].text, "=no key");
    EXPECT_TRUE(ini_parse("").skipped_lines.empty());
}

TEST(IniParse, ManyKeysAndSectionsStayInFileOrder) {
    std::string text;
    for (int i = 0; i < 20000; ++i)
        text += "[s" + std::to_string(i % 3) + "]\nk" + std::to_string(i) + "=" +
                std::to_string(i) + "\n";
    text += "[s0]\nk0=last\n";
    const IniFile ini = ini_parse(text);
    ASSERT_TRUE(ini.section("s0"));
    EXPECT_EQ(ini.section("s0")->size(), 6667u);
    EXPECT_EQ(ini.section("s0")->front(), (std::pair<std::string, std::string>{"k0", "last"}));
    EXPECT_EQ(ini.section("s1")->back().first, "k19999");
}

}  // namespace
}  // namespace veldra
