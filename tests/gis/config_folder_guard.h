#pragma once
// Points the language table at another configuration folder for one test, then reloads the previous.

#include <string>

#include <tl_gis/gis/language.h>
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
