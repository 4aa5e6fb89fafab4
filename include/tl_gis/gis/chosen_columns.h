#pragma once
// Attribute columns in the complete profile. Readers take the columns (or properties) that the
// host chose (TGisFile::s_strIdField, s_strValueField, s_strNameField) as each element's id, as a
// polygon's value and as a point's or marker's name; writers give every table they write the
// columns ID, BOUND, VALUE and NAME, which read back with those choices give the same elements.
// Public, so that format modules built beside the library read and write the same way.

#include <tl_gis/export.h>
#include <string>
#include <string_view>
#include <vector>

constexpr const char* COMPLETE_COLUMN_ID = "ID";
constexpr const char* COMPLETE_COLUMN_BOUND = "BOUND";
constexpr const char* COMPLETE_COLUMN_VALUE = "VALUE";
constexpr const char* COMPLETE_COLUMN_NAME = "NAME";

// "INC", "EXC" or "OPEN" for the bound types 16, 17 and 18; empty for any other.
TL_GIS_API const char* BoundTypeName(int boundType);
// 16, 17 or 18 for those names (ignoring case); 0 for any other text.
TL_GIS_API int BoundTypeFromName(std::string_view name);

// Where the chosen columns are in one table: an index into its rows, or -1.
struct TChosenColumns {
    int iId = -1;
    int iValue = -1;
    int iName = -1;
    std::vector<std::string> Missing;  // the chosen columns the table does not have
};

// Finds the host's chosen columns among a table's column names, ignoring case.
TL_GIS_API TChosenColumns FindChosenColumns(const std::vector<std::string>& names);

// What the chosen columns of one row hold. Texts are taken as they stand, trimmed of blanks; a
// value column whose text is no number gives no value.
struct TChosenValues {
    bool bHasId = false;
    std::string strId;
    bool bHasValue = false;
    double dValue = 0.0;
    bool bHasName = false;
    std::string strName;
};

TL_GIS_API TChosenValues ReadChosenValues(const TChosenColumns& columns, const std::vector<std::string>& row);
