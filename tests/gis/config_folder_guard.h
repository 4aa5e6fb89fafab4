#pragma once
// Points the language table at another configuration folder for one test, then puts the
// previous folder back and reloads the table from it.

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

private:
    std::string m_strPrevious;
};
