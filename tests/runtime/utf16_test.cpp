#include "runtime/utf16.h"

#include <gtest/gtest.h>

namespace veldra {
namespace {

TEST(Utf16, NamesOfEveryLengthConvertBothWays) {
    // One, two, three and four UTF-8 bytes per character; the last needs a surrogate pair.
    const std::pair<std::string, std::wstring> cases[] = {
        {"", L""},
        {"datafiles", L"datafiles"},
        {"J\xC3\xBCrgen", {L'J', wchar_t(0x00FC), L'r', L'g', L'e', L'n'}},
        {"\xE6\x97\xA5\xE6\x9C\xAC", {wchar_t(0x65E5), wchar_t(0x672C)}},
        {"a\xF0\x9F\x8E\xB2z", {L'a', wchar_t(0xD83C), wchar_t(0xDFB2), L'z'}},
    };
    for (const auto& [utf8, utf16] : cases) {
        EXPECT_EQ(utf8_to_utf16(utf8), utf16) << utf8;
        EXPECT_EQ(utf16_to_utf8(utf16), utf8) << utf8;
    }
}

TEST(Utf16, BrokenUtf8BecomesReplacementCharactersNotLostText) {
    const wchar_t replacement = wchar_t(0xFFFD);
    // A stray continuation byte, a sequence cut short at the end, an overlong "/" (which must
    // never turn into a folder separator), an encoded surrogate, and a lead byte followed by
    // plain ASCII: each bad byte is one replacement, and the text around it survives.
    EXPECT_EQ(utf8_to_utf16("a\x80z"), (std::wstring{L'a', replacement, L'z'}));
    EXPECT_EQ(utf8_to_utf16("ab\xC3"), (std::wstring{L'a', L'b', replacement}));
    EXPECT_EQ(utf8_to_utf16("\xC0\xAF"), (std::wstring{replacement, replacement}));
    EXPECT_EQ(utf8_to_utf16("\xED\xA0\x80"), (std::wstring{replacement, replacement, replacement}));
    EXPECT_EQ(utf8_to_utf16("\xE6x"), (std::wstring{replacement, L'x'}));
}

TEST(Utf16, LoneSurrogatesBecomeReplacementCharacters) {
    // Windows allows such names; they must not turn into invalid UTF-8 in the program's text.
    const std::string replacement = "\xEF\xBF\xBD";
    EXPECT_EQ(utf16_to_utf8(std::wstring{wchar_t(0xD800), L'x'}), replacement + "x");
    EXPECT_EQ(utf16_to_utf8(std::wstring{L'x', wchar_t(0xDC00)}), "x" + replacement);
    EXPECT_EQ(utf16_to_utf8(std::wstring{wchar_t(0xD83C)}), replacement);
}

}  // namespace
}  // namespace veldra
