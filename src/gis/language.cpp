#include <tl_gis/gis/language.h>

#include <cstring>

#include <tl_gis/platform/message_box.h>
#include <tl_gis/platform/numbers.h>
#include <tl_gis/platform/text_file.h>
#include "gis/text_format.h"
#include "gis/text_ids.h"

#ifndef TL_GIS_INSTALLED_CONFIG_DIR
#define TL_GIS_INSTALLED_CONFIG_DIR ""
#endif

TLanguageTable g_LanguageTable;

namespace {
std::string& ConfigFolder() {
    static std::string folder = "Config";
    return folder;
}

bool g_bStarted = false;

std::string ConfigPath(const char* name) {
    std::string path = ConfigFolder();
    if (!path.empty() && path.back() != '/' && path.back() != '\\') path += '/';
    return path + name;
}

const char* const kLanguageFiles[] = {"lang_english.ini", "lang_french.ini",     "lang_german.ini",
                                      "lang_italian.ini", "lang_portuguese.ini", "lang_spanish.ini"};
}  // namespace

TLanguageTable::TLanguageTable() {
    m_Entries.reserve(kMaxEntries);
}

TLanguageTable::~TLanguageTable() {
    Clear();
}

void TLanguageTable::Clear() {
    m_Entries.clear();
    m_iCount = 0;
}

const std::vector<std::string>& TLanguageTable::GetLanguageNames() {
    static const std::vector<std::string> names = {"ENGLISH", "FRENCH",     "GERMAN",
                                                   "ITALIAN", "PORTUGUESE", "SPANISH"};
    return names;
}

void TLanguageTable::SetConfigFolder(const std::string& folder) {
    ConfigFolder() = folder;
}

const std::string& TLanguageTable::GetConfigFolder() {
    return ConfigFolder();
}

const char* TLanguageTable::GetInstalledConfigFolder() {
    return TL_GIS_INSTALLED_CONFIG_DIR;
}

std::string TLanguageTable::LoadLanguage() {
    // Start-up begins from an empty table, also when a host runs it again: a value that names
    // no language, or a missing language file, must leave no texts of an earlier language.
    Clear();
    std::string value;
    bool found = false;
    TTextFile file;
    if (file.Open(ConfigPath("Orvanta.ini").c_str(), TTextFile::modeRead)) {
        char line[82];
        for (int c = file.PeekChar(); c >= 0; c = file.PeekChar()) {
            if (c != 'L') {
                // Other lines are passed over 80 characters at a time.
                file.ReadLine(line, 81);
                continue;
            }
            file.ReadLine(line, 80);
            const std::string_view text(line);
            const auto split = text.find_first_of("=\n");
            if (split == std::string_view::npos || text[split] != '=' || text.substr(0, split) != "Language")
                continue;
            const std::string_view rest = text.substr(split + 1);
            value = std::string(rest.substr(0, rest.find_first_of("=\n")));
            found = true;
        }
    }
    if (!found) value = "ENGLISH";
    SelectLanguage(value);
    return value;
}

bool TLanguageTable::SelectLanguage(const std::string& value) {
    std::string upper = value.substr(0, 99);
    for (char& c : upper)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    const auto& names = GetLanguageNames();
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (upper == names[i]) {
            LoadTextFile(ConfigPath(kLanguageFiles[i]).c_str());
            return true;
        }
    }
    return false;
}

void TLanguageTable::LoadTextFile(const char* path) {
    TTextFile file;
    if (!file.Open(path, TTextFile::modeRead)) {
        std::string text = FormatText(GetText(TEXT_LANGUAGE_FILE_MISSING), {path ? path : ""});
        if (text.size() > 299) text.resize(299);
        ShowMessageBox(text, GetText(TEXT_ERROR_CAPTION), MSGBOX_OK | MSGBOX_ICONERROR,
                       TEXT_LANGUAGE_FILE_MISSING);
        return;
    }
    Clear();
    std::string_view line;
    bool atLineStart = true;
    while (file.ReadLineView(line, 4096)) {
        // Only the start of a physical line can hold an entry; the rest of an overlong line is dropped.
        const bool lineStart = atLineStart;
        atLineStart = file.LastLineComplete();
        if (!lineStart || line.empty()) continue;
        const char first = line[0];
        if (first == '[' || first == ' ' || first == '\t' || first == '\v' || first == '\f' || first == '\r')
            continue;
        bool ok = false;
        const int id = ParseInt(line, &ok);
        if (!ok || first < '0' || first > '9') continue;  // not an entry
        const auto tab = line.find('\t');
        if (tab == std::string_view::npos || tab >= 80) continue;  // an id without its TAB is not an entry
        if (m_iCount >= kMaxEntries) break;                        // the table is full; the rest is ignored
        std::string_view text = line.substr(tab + 1);
        if (text.size() > static_cast<std::size_t>(kMaxTextLength)) text = text.substr(0, kMaxTextLength);
        m_Entries.push_back({id, std::string(text)});
        ++m_iCount;
    }
}

const char* TLanguageTable::GetText(int id) const {
    int low = 0;
    int high = m_iCount - 1;
    while (low <= high) {
        const int mid = low + (high - low) / 2;
        const int at = m_Entries[static_cast<std::size_t>(mid)].iId;
        if (at == id) return m_Entries[static_cast<std::size_t>(mid)].strText.c_str();
        if (id < at)
            high = mid - 1;
        else
            low = mid + 1;
    }
    return "";
}

const char* GetText(int id) {
    EnsureLibraryStarted();
    return g_LanguageTable.GetText(id);
}

bool CTl_gisApp::InitInstance() {
    g_bStarted = true;
    g_LanguageTable.LoadLanguage();
    return true;
}

CTl_gisApp& GetTlGisApp() {
    static CTl_gisApp app;
    return app;
}

void EnsureLibraryStarted() {
    if (!g_bStarted) GetTlGisApp().InitInstance();
}
