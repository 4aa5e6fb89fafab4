// The configuration and language files installed with the library: each must load whole, hold
// the same ids as the English file, and keep the format conversions the library fills in.

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "config_folder_guard.h"
#include "gis/language.h"
#include "test_support.h"

namespace {

const std::string kConfigFolder = TL_GIS_SOURCE_DIR "/Config";

struct TFileEntry {
    int iId;
    std::string strText;
};

// The conversions of a format text, one letter each: i for d/i, u for u/x/X/o, f for the
// floating conversions, s, c, and ? for a '%' that starts no valid conversion.
std::string Conversions(std::string_view text) {
    std::string kinds;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') continue;
        std::size_t j = i + 1;
        while (j < text.size() && std::string_view("-+ 0#").find(text[j]) != std::string_view::npos) ++j;
        while (j < text.size() && text[j] >= '0' && text[j] <= '9') ++j;
        if (j < text.size() && text[j] == '.') ++j;
        while (j < text.size() && text[j] >= '0' && text[j] <= '9') ++j;
        while (j < text.size() && std::string_view("hlLq").find(text[j]) != std::string_view::npos) ++j;
        if (j >= text.size()) return kinds + '?';
        const char conv = text[j];
        i = j;
        if (conv == '%') continue;
        if (conv == 'd' || conv == 'i')
            kinds += 'i';
        else if (std::string_view("uxXo").find(conv) != std::string_view::npos)
            kinds += 'u';
        else if (std::string_view("fFeEgG").find(conv) != std::string_view::npos)
            kinds += 'f';
        else if (conv == 's' || conv == 'c')
            kinds += conv;
        else
            kinds += '?';
    }
    return kinds;
}

bool IsValidUtf8(std::string_view bytes) {
    for (std::size_t i = 0; i < bytes.size();) {
        const auto b = static_cast<unsigned char>(bytes[i]);
        const std::size_t n = b < 0x80           ? 1
                              : (b >> 5) == 0x6  ? 2
                              : (b >> 4) == 0xE  ? 3
                              : (b >> 3) == 0x1E ? 4
                                                 : 0;
        if (n == 0 || i + n > bytes.size()) return false;
        for (std::size_t k = 1; k < n; ++k)
            if ((static_cast<unsigned char>(bytes[i + k]) & 0xC0) != 0x80) return false;
        i += n;
    }
    return true;
}

// Reads a language file strictly: every line is a '[' header, blank, or "id<TAB>text" with a
// text of 1 to 998 characters.
::testing::AssertionResult ReadEntries(const std::string& path, std::vector<TFileEntry>& entries) {
    const std::string bytes = ReadFileBytes(path);
    if (bytes.empty()) return ::testing::AssertionFailure() << path << " is missing or empty";
    if (bytes.rfind("\xEF\xBB\xBF", 0) == 0)
        return ::testing::AssertionFailure() << path << " starts with a byte-order mark";
    if (!IsValidUtf8(bytes)) return ::testing::AssertionFailure() << path << " is not valid UTF-8";
    std::size_t start = 0;
    for (int lineNumber = 1; start < bytes.size(); ++lineNumber) {
        std::size_t end = bytes.find('\n', start);
        if (end == std::string::npos) end = bytes.size();
        std::string_view line(bytes.data() + start, end - start);
        start = end + 1;
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        if (line.empty() || line[0] == '[') continue;
        const std::size_t tab = line.find('\t');
        const std::string_view id = line.substr(0, tab);
        if (tab == std::string_view::npos || id.empty() || id.size() > 9 ||
            id.find_first_not_of("0123456789") != std::string_view::npos)
            return ::testing::AssertionFailure()
                   << path << " line " << lineNumber << " is not \"id<TAB>text\"";
        const std::string_view text = line.substr(tab + 1);
        if (text.empty() || text.size() > static_cast<std::size_t>(TLanguageTable::kMaxTextLength))
            return ::testing::AssertionFailure()
                   << path << " line " << lineNumber << " has a text of " << text.size() << " characters";
        entries.push_back({std::stoi(std::string(id)), std::string(text)});
    }
    return ::testing::AssertionSuccess();
}

std::string LanguageFile(const std::string& language) {
    return kConfigFolder + "/lang_" + language + ".ini";
}

// The conversions each text the library shows must carry (texts composed into one message
// carry the conversions of that message between them as shown here).
const std::map<int, std::string> kUsedTexts = {
    {1010, ""}, {1011, ""}, {2039, "s"}, {2040, "ff"}, {2041, ""},  {3080, "s"},  {3081, ""}, {3082, ""},
    {3083, ""}, {3084, ""}, {3085, ""},  {3086, ""},   {3087, ""},  {3088, ""},   {3089, ""}, {3090, ""},
    {3091, ""}, {3096, ""}, {5054, ""},  {5084, "s"},  {5090, ""},  {5173, "ii"}, {5185, ""}, {5186, ""},
    {5187, ""}, {5188, ""}, {12002, ""}, {17001, "s"}, {17002, ""}, {17008, "s"},
};

TEST(ShippedLanguageFiles, EnglishHoldsEveryTextTheLibraryShows) {
    std::vector<TFileEntry> entries;
    ASSERT_TRUE(ReadEntries(LanguageFile("english"), entries));
    std::map<int, std::string> texts;
    for (const auto& e : entries) texts[e.iId] = e.strText;
    for (const auto& [id, kinds] : kUsedTexts) {
        ASSERT_TRUE(texts.count(id)) << "text " << id << " is missing";
        EXPECT_EQ(Conversions(texts[id]), kinds) << "text " << id << ": " << texts[id];
    }
}

TEST(ShippedLanguageFiles, ConfigurationSelectsEnglish) {
    TConfigFolderGuard guard(kConfigFolder);
    TScriptedMessages messages;
    EXPECT_EQ(g_LanguageTable.LoadLanguage(), "english");
    EXPECT_TRUE(messages.Shown().empty());
    EXPECT_EQ(g_LanguageTable.GetLanguageIndex(), 0);
    EXPECT_EQ(g_LanguageTable.GetCount(), static_cast<int>(kUsedTexts.size()));
}

class ShippedLanguageFile : public ::testing::TestWithParam<const char*> {};

TEST_P(ShippedLanguageFile, LoadsWholeInAscendingOrder) {
    std::vector<TFileEntry> entries;
    ASSERT_TRUE(ReadEntries(LanguageFile(GetParam()), entries));
    for (std::size_t i = 1; i < entries.size(); ++i)
        EXPECT_LT(entries[i - 1].iId, entries[i].iId) << "ids out of order at " << entries[i].iId;
    TLanguageTable table;
    TScriptedMessages messages;
    table.LoadTextFile(LanguageFile(GetParam()).c_str());
    EXPECT_TRUE(messages.Shown().empty());
    EXPECT_EQ(table.GetCount(), static_cast<int>(entries.size()));
    for (const auto& e : entries) EXPECT_EQ(std::string(table.GetText(e.iId)), e.strText) << "text " << e.iId;
}

TEST_P(ShippedLanguageFile, MatchesEnglishIdsAndConversions) {
    std::vector<TFileEntry> english, entries;
    ASSERT_TRUE(ReadEntries(LanguageFile("english"), english));
    ASSERT_TRUE(ReadEntries(LanguageFile(GetParam()), entries));
    ASSERT_EQ(entries.size(), english.size());
    for (std::size_t i = 0; i < entries.size(); ++i) {
        ASSERT_EQ(entries[i].iId, english[i].iId) << "entry " << i;
        EXPECT_EQ(Conversions(entries[i].strText), Conversions(english[i].strText))
            << "text " << entries[i].iId << ": " << entries[i].strText;
    }
}

INSTANTIATE_TEST_SUITE_P(Languages, ShippedLanguageFile,
                         ::testing::Values("english", "french", "german", "italian", "portuguese", "spanish"),
                         [](const auto& info) { return std::string(info.param); });

}  // namespace
