// Attribute texts between Windows Latin 1 and UTF-8, and the declarations that name them.

#include <gtest/gtest.h>

#include "platform/text_encoding.h"

namespace {

TEST(TextEncoding, ConvertsBothWays) {
    // Latin 1 bytes, their UTF-8, and whether the UTF-8 converts back to the same bytes.
    const std::tuple<std::string, std::string, bool> cases[] = {
        {"Feld M\xFCller",
         "Feld M\xC3\xBC"
         "ller",
         true},
        {"\x80 \x9F \xA0", "\xE2\x82\xAC \xC5\xB8 \xC2\xA0", true},
        {"\x81", "\xC2\x81", true},  // a byte the code page leaves unused keeps its number
        {"plain", "plain", true},
    };
    for (const auto& [latin, utf8, back] : cases) {
        EXPECT_EQ(ToUtf8(latin, ENCODING_WINDOWS_1252), utf8) << latin;
        EXPECT_EQ(FromUtf8(utf8, ENCODING_WINDOWS_1252) == latin, back) << latin;
    }
    // UTF-8 that is valid passes; each byte of a broken sequence is taken as Latin 1.
    EXPECT_EQ(ToUtf8("\xE2\x82\xAC", ENCODING_UTF8), "\xE2\x82\xAC");
    EXPECT_EQ(ToUtf8("a\xE2\x82z", ENCODING_UTF8), "a\xC3\xA2\xE2\x80\x9Az");
    EXPECT_EQ(ToUtf8("\xC0\xAF", ENCODING_UTF8), "\xC3\x80\xC2\xAF");  // an overlong '/'
    // What Latin 1 cannot hold becomes '?'.
    EXPECT_EQ(FromUtf8("\xE4\xB8\xAD x", ENCODING_WINDOWS_1252), "? x");
}

TEST(TextEncoding, NamesOfDeclarations) {
    const std::pair<const char*, int> cases[] = {
        {"UTF-8", ENCODING_UTF8},
        {"utf8", ENCODING_UTF8},
        {"65001", ENCODING_UTF8},
        {"1252", ENCODING_WINDOWS_1252},
        {"\"WindowsLatin1\"", ENCODING_WINDOWS_1252},
        {"ISO-8859-1", ENCODING_WINDOWS_1252},
        {" 88591\r\n", ENCODING_WINDOWS_1252},
        {"CP1251", -1},
        {"", -1},
    };
    for (const auto& [name, expected] : cases) {
        TTextEncoding encoding = ENCODING_UTF8;
        const bool known = EncodingFromName(name, encoding);
        EXPECT_EQ(known ? static_cast<int>(encoding) : -1, expected) << name;
    }
}

}  // namespace
