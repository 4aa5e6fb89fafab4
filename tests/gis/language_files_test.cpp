// The language files shipped with the library: each loads whole and holds every text the
// library shows, with the conversions the library fills in.

#include <gtest/gtest.h>

#include <map>
#include <regex>
#include <string>

#include "config_folder_guard.h"
#include "gis/language.h"
#include "test_support.h"

namespace {

const std::string kConfigFolder = TL_GIS_SOURCE_DIR "/Config";

// Text id and the conversion letters the library's message for it expects.
const std::map<int, std::string> kUsedTexts = {
    {1010, ""}, {1011, ""}, {2039, "s"}, {2040, "ff"}, {2041, ""},  {3080, "s"},  {3081, ""}, {3082, ""},
    {3083, ""}, {3084, ""}, {3085, ""},  {3086, ""},   {3087, ""},  {3088, ""},   {3089, ""}, {3090, ""},
    {3091, ""}, {3096, ""}, {5054, ""},  {5084, "s"},  {5090, ""},  {5173, "dd"}, {5185, ""}, {5186, ""},
    {5187, ""}, {5188, ""}, {12002, ""}, {17001, "s"}, {17002, ""}, {17008, "s"},
};

std::string Conversions(const std::string& text) {
    static const std::regex conversion("%[-+ 0#]*[0-9]*(\\.[0-9]*)?[hlLq]*([a-zA-Z%])");
    std::string letters;
    for (std::sregex_iterator it(text.begin(), text.end(), conversion), end; it != end; ++it)
        if ((*it)[2] != "%") letters += (*it)[2].str();
    return letters;
}

class ShippedLanguageFile : public ::testing::TestWithParam<const char*> {};

// Ids out of ascending order would hide texts from the lookup; lines it cannot read lower the count.
TEST_P(ShippedLanguageFile, HoldsEveryTextTheLibraryShows) {
    TLanguageTable table;
    TScriptedMessages messages;
    table.LoadTextFile((kConfigFolder + "/lang_" + GetParam() + ".ini").c_str());
    EXPECT_TRUE(messages.Shown().empty());
    EXPECT_EQ(table.GetCount(), static_cast<int>(kUsedTexts.size()));
    for (const auto& [id, conversions] : kUsedTexts) {
        const std::string text = table.GetText(id);
        EXPECT_FALSE(text.empty()) << "text " << id;
        EXPECT_EQ(Conversions(text), conversions) << "text " << id << ": " << text;
    }
}

INSTANTIATE_TEST_SUITE_P(Languages, ShippedLanguageFile,
                         ::testing::Values("english", "french", "german", "italian", "portuguese", "spanish"),
                         [](const auto& info) { return std::string(info.param); });

TEST(ShippedLanguageFiles, ConfigurationSelectsEnglish) {
    TConfigFolderGuard guard(kConfigFolder);
    TScriptedMessages messages;
    EXPECT_EQ(g_LanguageTable.LoadLanguage(), "english");
    EXPECT_TRUE(messages.Shown().empty());
    EXPECT_EQ(g_LanguageTable.GetLanguageIndex(), 0);
}

}  // namespace
