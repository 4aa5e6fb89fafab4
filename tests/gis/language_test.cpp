// The language table: which file the configuration selects, how a language file is parsed,
// how texts are looked up, and the messages built from the table.

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "config_folder_guard.h"
#include "gis/coordinates.h"
#include "gis/language.h"
#include "platform/message_box.h"
#include "test_support.h"

using namespace std::string_literals;

namespace {

const char* const kLanguageNames[] = {"english", "french", "german", "italian", "portuguese", "spanish"};

class LanguageTableTest : public ::testing::Test {
protected:
    void WriteConfig(const std::string& text) const { WriteFileBytes(m_dir.File("Orvanta.ini"), text); }
    void WriteLanguage(const std::string& name, const std::string& text) const {
        WriteFileBytes(m_dir.File("lang_" + name + ".ini"), text);
    }
    // Starts the library with English selected and the given English file.
    void StartWithEnglish(const std::string& text) const {
        WriteConfig("Language=english\n");
        WriteLanguage("english", text);
        TScriptedMessages quiet;
        GetTlGisApp().InitInstance();
    }

    TTempDir m_dir;
    TConfigFolderGuard m_guard{m_dir.Path()};
};

struct TSelectionCase {
    const char* name;
    bool bHasConfig;
    std::string strConfig;
    const char* returned;  // what LoadLanguage reports
    int iLanguage;         // index of the file loaded, -1 for none
};

TEST_F(LanguageTableTest, ConfigurationSelectsTheLanguageFile) {
    const TSelectionCase cases[] = {
        {"lower-case value", true, "Language=french\n", "french", 1},
        {"blanks around the equals sign", true, "Language = French\n", "ENGLISH", 0},
        {"longer key", true, "Languages=french\n", "ENGLISH", 0},
        {"no configuration file", false, "", "ENGLISH", 0},
        {"no key", true, "[Settings]\nUnits=metric\n", "ENGLISH", 0},
        {"key under a section header", true, "[Settings]\nLanguage=GERMAN\n", "GERMAN", 2},
        {"key inside a header line", true, "[Language=german]\n", "ENGLISH", 0},
        {"last occurrence wins", true, "Language=spanish\n[Other]\nLanguage=Italian\n", "Italian", 3},
        {"a later key without value changes nothing", true, "Language=french\nLanguage\n", "french", 1},
        {"CR LF line ends", true, "Language=portuguese\r\nUnits=1\r\n", "portuguese", 4},
        {"value ends at the next equals sign", true, "Language=spanish=old\n", "spanish", 5},
        {"trailing blank", true, "Language=french \n", "french ", -1},
        {"unknown language", true, "Language=dutch\n", "dutch", -1},
        {"rest of a long line begins a line", true, std::string(80, 'x') + "Language=french\n", "french", 1},
        {"rest of a long key line begins a line", true,
         "Language=italian" + std::string(63, ' ') + "Language=german\n", "german", 2},
    };
    for (int i = 0; i < 6; ++i) WriteLanguage(kLanguageNames[i], "1\t"s + kLanguageNames[i] + "\n");
    for (const auto& c : cases) {
        if (c.bHasConfig)
            WriteConfig(c.strConfig);
        else
            std::remove(m_dir.File("Orvanta.ini").c_str());
        TScriptedMessages messages;
        const std::string returned = g_LanguageTable.LoadLanguage();
        EXPECT_EQ(returned, c.returned) << c.name;
        EXPECT_TRUE(messages.Shown().empty()) << c.name;
        if (c.iLanguage < 0) {
            EXPECT_EQ(g_LanguageTable.GetCount(), 0) << c.name;
            EXPECT_STREQ(GetText(1), "") << c.name;
        } else {
            EXPECT_EQ(g_LanguageTable.GetLanguageIndex(), c.iLanguage) << c.name;
            EXPECT_STREQ(GetText(1), kLanguageNames[c.iLanguage]) << c.name;
        }
    }
}

struct TLookupCase {
    const char* name;
    std::string strFile;
    std::vector<std::pair<int, std::string>> lookups;  // id and the text expected ("" when absent)
    int iCount;
};

TEST_F(LanguageTableTest, FileParsingAndLookup) {
    const TLookupCase cases[] = {
        {"ascending ids",
         "10\tten\n20\ttwenty\n30\tthirty\n",
         {{10, "ten"}, {20, "twenty"}, {30, "thirty"}, {15, ""}, {0, ""}, {40, ""}},
         3},
        {"ids out of order", "30\tthirty\n10\tten\n20\ttwenty\n", {{30, ""}, {10, "ten"}, {20, "twenty"}}, 3},
        {"text kept as written",
         "1\t  two leading blanks\n2\ta\tb\t\tc\n3\ttrailing  \n4\t\n",
         {{1, "  two leading blanks"}, {2, "a\tb\t\tc"}, {3, "trailing  "}, {4, ""}},
         4},
        {"headers, indented and blank lines",
         "[English]\n\n 5\tindented\n\t6\ttabbed\n7\tkept\n[End]\n",
         {{5, ""}, {6, ""}, {7, "kept"}},
         1},
        {"CR LF line ends", "1\tone\r\n2\ttwo\r\n", {{1, "one"}, {2, "two"}}, 2},
        {"line without TAB", "1 one\n2\ttwo\n", {{1, ""}, {2, "two"}}, 1},
        {"TAB within and beyond 80 characters",
         "1" + std::string(80, ' ') + "\tfar\n2" + std::string(78, ' ') + "\tnear\n",
         {{1, ""}, {2, "near"}},
         1},
        {"id not a number", "abc\tx\n-1\tminus\n2\ttwo\n", {{-1, ""}, {2, "two"}}, 1},
        {"characters between id and TAB", "12abc\tx\n", {{12, "x"}}, 1},
        {"NUL inside a text", "1\tab\0cd\n2\tnext\n"s, {{1, "ab"}, {2, "next"}}, 2},
        {"NUL at a line start", "\0"s + "1\tx\n2\tnext\n", {{1, ""}, {2, "next"}}, 1},
        {"8-bit bytes kept as they stand",
         "1\tcaf\xE9\n2\t\xFF\xFE\x80\n",
         {{1, "caf\xE9"}, {2, "\xFF\xFE\x80"}},
         2},
        {"byte-order mark hides the first entry",
         "\xEF\xBB\xBF"
         "1\tx\n2\ttwo\n",
         {{1, ""}, {2, "two"}},
         1},
    };
    for (const auto& c : cases) {
        StartWithEnglish(c.strFile);
        EXPECT_EQ(g_LanguageTable.GetCount(), c.iCount) << c.name;
        for (const auto& [id, expected] : c.lookups) {
            const char* text = GetText(id);
            ASSERT_NE(text, nullptr) << c.name << ", id " << id;
            EXPECT_EQ(std::string(text), expected) << c.name << ", id " << id;
        }
    }
}

// The table keeps the first thousand entries. A text is cut to 998 characters, and no piece
// of an overlong line is taken for an entry, wherever the line would be split.
TEST_F(LanguageTableTest, LimitsOfTheTable) {
    std::string file;
    for (int id = 1; id <= 1500; ++id) file += std::to_string(id) + "\tt" + std::to_string(id) + "\n";
    StartWithEnglish(file);
    EXPECT_EQ(g_LanguageTable.GetCount(), TLanguageTable::kMaxEntries);
    EXPECT_STREQ(GetText(1000), "t1000");
    EXPECT_STREQ(GetText(1001), "");
    for (const std::size_t fill : {996u, 997u, 998u, 999u, 4094u, 8190u, 70000u}) {
        const std::string tail = std::string(fill, 'a') + "99\tfake";
        StartWithEnglish("1\t" + tail + "\n2\tnext\n");
        EXPECT_EQ(std::string(GetText(1)), tail.substr(0, TLanguageTable::kMaxTextLength)) << "fill " << fill;
        EXPECT_STREQ(GetText(99), "") << "fill " << fill;
        EXPECT_EQ(g_LanguageTable.GetCount(), 2) << "fill " << fill;
    }
}

// At start-up the table is empty when the language file turns out to be missing, so the
// message has no words; it still says which message it is.
TEST_F(LanguageTableTest, MissingLanguageFileAtStartUp) {
    StartWithEnglish("12002\tError\n17008\tCannot open %s.\n");
    WriteConfig("Language=german\n");
    TScriptedMessages messages;
    GetTlGisApp().InitInstance();
    ASSERT_EQ(messages.Shown().size(), 1u);
    EXPECT_EQ(messages.Shown()[0].strText, "");
    EXPECT_EQ(messages.Shown()[0].iTextId, 17008);
    EXPECT_EQ(g_LanguageTable.GetCount(), 0);
}

// With texts already loaded the message names the file; the path is an argument, never a format.
TEST_F(LanguageTableTest, MissingLanguageFileMessageNamesThePath) {
    const std::string longPath = m_dir.File(std::string(400, 'p') + ".ini");
    const struct {
        const char* name;
        std::string strPath;
        std::string strExpected;
    } cases[] = {
        {"plain path", m_dir.File("lang_none.ini"), "Cannot open " + m_dir.File("lang_none.ini") + "."},
        {"path with percent signs", m_dir.File("100%d%s.ini"),
         "Cannot open " + m_dir.File("100%d%s.ini") + "."},
        {"message cut to 299 characters", longPath, ("Cannot open " + longPath).substr(0, 299)},
    };
    WriteLanguage("english", "12002\tLanguage file\n17008\tCannot open %s.\n");
    TLanguageTable table;
    table.LoadTextFile(m_dir.File("lang_english.ini").c_str());
    for (const auto& c : cases) {
        TScriptedMessages messages;
        table.LoadTextFile(c.strPath.c_str());
        ASSERT_EQ(messages.Shown().size(), 1u) << c.name;
        EXPECT_EQ(messages.Shown()[0].strText, c.strExpected) << c.name;
        EXPECT_EQ(table.GetCount(), 2) << c.name << ": the table must stay as it was";
        EXPECT_STREQ(table.GetText(12002), "Language file") << c.name;
    }
}

TEST_F(LanguageTableTest, ProjectedCoordinatePrompt) {
    StartWithEnglish(
        "1010\tThis\n1011\tfile\n2039\t%s looks projected\n2040\t (%.1f, %.3f)\n2041\tStop?\n5054\tImport\n");
    const struct {
        const char* name;
        std::string strSource;
        int iAnswer;
        std::string strExpected;
    } cases[] = {
        {"No", DescribeSourceForPrompt(" DXF "), IDNO,
         "This DXF file looks projected (5000000.5, 450000.125)\nStop?"},
        {"path with a percent sign", "C:\\jobs\\100%s.job", IDYES,
         "C:\\jobs\\100%s.job looks projected (5000000.5, 450000.125)\nStop?"},
    };
    for (const auto& c : cases) {
        TScriptedMessages messages({c.iAnswer});
        EXPECT_EQ(PromptProjectedCoordinate(c.strSource.c_str(), 5000000.5, 450000.125), c.iAnswer) << c.name;
        ASSERT_EQ(messages.Shown().size(), 1u) << c.name;
        const TMessageBoxRequest& shown = messages.Shown()[0];
        EXPECT_EQ(shown.strText, c.strExpected) << c.name;
        EXPECT_EQ(shown.strCaption, "Import") << c.name;
        EXPECT_EQ(shown.uFlags, MB_YESNO | MB_ICONEXCLAMATION) << c.name;
    }
}

}  // namespace
