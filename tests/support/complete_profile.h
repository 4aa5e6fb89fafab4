#pragma once
// The library's complete profile, with the attribute columns chosen, while the object lives; the
// default profile, without chosen columns, after it.

#include <string>

#include <tl_gis/gis/gis_file.h>

class TCompleteProfile {
public:
    // ID, VALUE and NAME are the columns the complete writers write.
    explicit TCompleteProfile(bool complete = true, std::string id = "ID", std::string value = "VALUE",
                              std::string name = "NAME") {
        TGisFile::s_bCompleteProfile = complete;
        if (!complete) return;
        TGisFile::s_strIdField = std::move(id);
        TGisFile::s_strValueField = std::move(value);
        TGisFile::s_strNameField = std::move(name);
    }
    ~TCompleteProfile() {
        TGisFile::s_bCompleteProfile = false;
        TGisFile::s_strIdField.clear();
        TGisFile::s_strValueField.clear();
        TGisFile::s_strNameField.clear();
    }
    TCompleteProfile(const TCompleteProfile&) = delete;
    TCompleteProfile& operator=(const TCompleteProfile&) = delete;
};
