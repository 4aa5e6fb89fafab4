#pragma once
// Localized texts: every text the library shows is looked up by id in one process-wide table,
// filled from the user's language file at library start-up.

#include <tl_gis/export.h>
#include <string>
#include <vector>

class TL_GIS_API TLanguageTable {
public:
    static constexpr int kMaxEntries = 1000;
    static constexpr int kMaxTextLength = 998;

    TLanguageTable();
    ~TLanguageTable();

    // Reads the Language key of Orvanta.ini in the configuration folder and loads the matching
    // language file. Returns the language value used ("ENGLISH" when none was found).
    std::string LoadLanguage();
    // Loads the language file of a Language value (e.g. "french"); false when the value names
    // none of the six languages, in which case the table is left empty.
    bool SelectLanguage(const std::string& value);
    // Parses one language file into the table; shows a message when it cannot be opened.
    void LoadTextFile(const char* path);
    // The text of an id, or "" when absent. The pointer stays valid until the table is cleared.
    const char* GetText(int id) const;
    void Clear();

    int GetCount() const { return m_iCount; }

    // Folder of Orvanta.ini and the language files; "Config" under the working directory unless
    // a host names another one.
    static void SetConfigFolder(const std::string& folder);
    static const std::string& GetConfigFolder();
    // The configuration folder installed with the library (may not exist).
    static const char* GetInstalledConfigFolder();
    // Names of the six languages in index order ("ENGLISH", ...).
    static const std::vector<std::string>& GetLanguageNames();

private:
    struct TEntry {
        int iId = 0;
        std::string strText;
    };
    std::string m_strText;
    int m_iCount = 0;
    std::vector<TEntry> m_Entries;
};

extern TL_GIS_API TLanguageTable g_LanguageTable;

// The text of a message id from the library's language table ("" when absent).
TL_GIS_API const char* GetText(int id);

// The library's application object: its start-up loads the language table.
class TL_GIS_API CTl_gisApp {
public:
    // Loads the language table; runs once by itself before the library's first use, and again
    // whenever a host calls it (after changing the configuration folder, say).
    bool InitInstance();
};

// Runs the library's start-up once, if it has not run yet.
TL_GIS_API void EnsureLibraryStarted();
TL_GIS_API CTl_gisApp& GetTlGisApp();
