#pragma once
// Points the library's language table at another configuration folder for one test and puts
// the previous folder, and the table loaded from it, back afterwards.

#include <string>

#include "gis/language.h"
#include "test_support.h"

class TConfigFolderGuard {
public:
    explicit TConfigFolderGuard(const std::string& folder)
        : m_strPrevious(TLanguageTable::GetConfigFolder()) {
        TLanguageTable::SetConfigFolder(folder);
    }
    ~TConfigFolderGuard() {
        TLanguageTable::SetConfigFolder(m_strPrevious);
        TScriptedMessages quiet;  // the previous folder may hold no language file
        GetTlGisApp().InitInstance();
    }
    TConfigFolderGuard(const TConfigFolderGuard&) = delete;
    TConfigFolderGuard& operator=(const TConfigFolderGuard&) = delete;

private:
    std::string m_strPrevious;
};
