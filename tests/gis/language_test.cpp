// The language table: which file the configuration selects, how a language file is parsed and
// looked up, and the messages built from the table.

#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <regex>
#include <string>
#include <utility>
#include <vector>

#include <tl_gis/gis/coordinates.h>
#include <tl_gis/gis/language.h>
#include "config_folder_guard.h"
#include "gis/text_ids.h"
#include "test_support.h"

using namespace std::string_literals;

namespace {

const char* const kLanguages[] = {"english", "french", "german", "italian", "portuguese", "spanish"};

class LanguageTableTest : public ::testing::Test {
protected:
    void Write(const std::string& name, const std::string& s) const { WriteFileBytes(m_dir.File(name), s); }
    // Starts the library with English selected and the given English file.
    void StartWithEnglish(const std::string& text) const {
        Write("Orvanta.ini", "Language=english\n");
        Write("lang_english.ini", text);
        TScriptedMessages quiet;
        GetTlGisApp().InitInstance();
    }

    TTempDir m_dir;
    TConfigFolderGuard m_guard{m_dir.Path()};
};

// Each language file holds its own name as text 1; "" is no configuration file.
TEST_F(LanguageTableTest, ConfigurationSelectsTheLanguageFile) {
    const struct {
        std::string strConfig;
        const char* returned;
        const char* text;
    } cases[] = {
        {"Language=french\n", "french", "french"},
        {"Language = French\n", "ENGLISH", "english"},
        {"language=FRENCH\n", "ENGLISH", "english"},
        {"", "ENGLISH", "english"},
        {"Language=spanish\n[Other]\nLanguage=GERMAN\n", "GERMAN", "german"},
        {"Language=portuguese\r\nUnits=1\r\n", "portuguese", "portuguese"},
        {"Language=french \n", "french ", ""},
        {std::string(80, 'x') + "Language=french\n", "french", "french"},
    };
    for (const char* language : kLanguages) Write("lang_"s + language + ".ini", "1\t"s + language + "\n");
    for (const auto& c : cases) {
        std::remove(m_dir.File("Orvanta.ini").c_str());
        if (!c.strConfig.empty()) Write("Orvanta.ini", c.strConfig);
        TScriptedMessages messages;
        EXPECT_EQ(g_LanguageTable.LoadLanguage(), c.returned) << c.strConfig;
        EXPECT_TRUE(messages.Shown().empty()) << c.strConfig;
        EXPECT_STREQ(GetText(1), c.text) << c.strConfig;
    }
}

struct TParseCase {
    std::string name, strFile;
    std::vector<std::pair<int, std::string>> lookups;  // "" when absent
    int iCount;
};

// The table keeps the first thousand entries; a text is cut to 998 characters, and no piece of
// an overlong line is taken for an entry, wherever the line would be split.
TEST_F(LanguageTableTest, FileParsingAndLookup) {
    std::vector<TParseCase> cases = {
        {"ascending ids", "10\tten\n20\ttwenty\n30\tthirty\n", {{20, "twenty"}, {15, ""}, {40, ""}}, 3},
        {"ids out of order", "30\tthirty\n10\tten\n20\ttwenty\n", {{30, ""}, {10, "ten"}}, 3},
        {"text kept as written", "1\t  two\n2\ta\tb\t\tc \n", {{1, "  two"}, {2, "a\tb\t\tc "}}, 2},
        {"headers, indented lines", "[English]\n\n 5\tindented\n7\tkept\n", {{5, ""}, {7, "kept"}}, 1},
        {"CR LF line ends", "1\tone\r\n2\ttwo\r\n", {{1, "one"}, {2, "two"}}, 2},
        {"line without TAB", "1 one\n2\ttwo\n", {{1, ""}, {2, "two"}}, 1},
        {"TAB beyond 80", "1" + std::string(80, ' ') + "\tx\n2\ty\n", {{1, ""}, {2, "y"}}, 1},
        {"NUL inside a text", "1\tab\0cd\n2\tnext\n"s, {{1, "ab"}, {2, "next"}}, 2},
        {"8-bit bytes", "1\tcaf\xE9\n2\t\xFF\xFE\n", {{1, "caf\xE9"}, {2, "\xFF\xFE"}}, 2},
        {"1500 entries", "", {{1000, "t1000"}, {1001, ""}}, 1000},
    };
    for (int id = 1; id <= 1500; ++id)
        cases.back().strFile += std::to_string(id) + "\tt" + std::to_string(id) + "\n";
    for (const std::size_t fill : {996u, 997u, 998u, 999u, 4094u, 8190u, 70000u}) {
        const std::string tail = std::string(fill, 'a') + "99\tfake";
        cases.push_back({"fill " + std::to_string(fill),
                         "1\t" + tail + "\n2\tnext\n",
                         {{1, tail.substr(0, 998)}, {99, ""}},
                         2});
    }
    for (const auto& c : cases) {
        StartWithEnglish(c.strFile);
        EXPECT_EQ(g_LanguageTable.GetCount(), c.iCount) << c.name;
        for (const auto& [id, expected] : c.lookups) {
            ASSERT_NE(GetText(id), nullptr) << c.name << ", id " << id;
            EXPECT_EQ(GetText(id), expected) << c.name << ", id " << id;
        }
    }
}

// A missing file at start-up leaves the table empty, so the message has no words but keeps its
// id. With texts loaded the message names the path, as an argument and never as a format.
TEST_F(LanguageTableTest, MissingLanguageFile) {
    StartWithEnglish("12002\tError\n17008\tCannot open %s.\n");
    const std::string path = m_dir.File("100%d%s.ini");
    TScriptedMessages messages;
    g_LanguageTable.LoadTextFile(path.c_str());
    Write("Orvanta.ini", "Language=german\n");
    GetTlGisApp().InitInstance();
    ASSERT_EQ(messages.Shown().size(), 2u);
    EXPECT_EQ(messages.Shown()[0].strText, "Cannot open " + path + ".");
    EXPECT_EQ(messages.Shown()[1].strText, "");
    EXPECT_EQ(messages.Shown()[1].iTextId, 17008);
    EXPECT_EQ(g_LanguageTable.GetCount(), 0);
}

TEST_F(LanguageTableTest, ProjectedCoordinatePromptAnsweredYesAndNo) {
    StartWithEnglish(
        "1010\tThis\n1011\tfile\n2039\t%s looks projected\n2040\t (%.1f, %.3f)\n2041\tStop?\n5054\tImport\n");
    const std::string source = DescribeSourceForPrompt(" DXF ");
    for (const int answer : {ANSWER_NO, ANSWER_YES}) {
        TScriptedMessages messages({answer});
        EXPECT_EQ(PromptProjectedCoordinate(source.c_str(), 5000000.5, 450000.125), answer);
        ASSERT_EQ(messages.Shown().size(), 1u);
        EXPECT_EQ(messages.Shown()[0].strText,
                  "This DXF file looks projected (5000000.5, 450000.125)\nStop?");
        EXPECT_EQ(messages.Shown()[0].strCaption, "Import");
        EXPECT_EQ(messages.Shown()[0].uFlags, MSGBOX_YESNO | MSGBOX_ICONEXCLAMATION);
    }
}

// Each shipped language file holds every text the library shows, with the conversions its message
// fills in; ids out of ascending order would hide texts from the lookup.
TEST(ShippedLanguageFiles, HoldEveryTextTheLibraryShows) {
    const std::regex conversion("%[-+ 0#]*[0-9]*(\\.[0-9]*)?[hlLq]*([a-zA-Z%])");
    for (const char* language : kLanguages) {
        TLanguageTable table;
        TScriptedMessages messages;
        table.LoadTextFile((TL_GIS_SOURCE_DIR "/Config/lang_"s + language + ".ini").c_str());
        EXPECT_TRUE(messages.Shown().empty()) << language;
        EXPECT_EQ(table.GetCount(), static_cast<int>(std::size(LIBRARY_TEXTS))) << language;
        for (const auto& [id, conversions] : LIBRARY_TEXTS) {
            const std::string text = table.GetText(id);
            std::string found;
            for (std::sregex_iterator it(text.begin(), text.end(), conversion), end; it != end; ++it)
                if ((*it)[2] != "%") found += (*it)[2].str();
            EXPECT_TRUE(!text.empty() && found == conversions) << language << " text " << id << ": " << text;
        }
    }
}

}  // namespace
