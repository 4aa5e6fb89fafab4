#include "gis/attribute_columns.h"

#include <tl_gis/gis/gis_file.h>
#include <tl_gis/platform/numbers.h>

namespace {
int FindColumn(const std::vector<std::string>& names, const std::string& wanted,
               std::vector<std::string>& missing) {
    if (wanted.empty()) return -1;
    for (std::size_t i = 0; i < names.size(); ++i)
        if (EqualsNoCase(names[i], wanted)) return static_cast<int>(i);
    missing.push_back(wanted);
    return -1;
}

std::string_view Trimmed(std::string_view text) {
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
    return text;
}

const std::string* Cell(const std::vector<std::string>& row, int index) {
    return index >= 0 && static_cast<std::size_t>(index) < row.size() ? &row[static_cast<std::size_t>(index)]
                                                                      : nullptr;
}
}  // namespace

const char* BoundTypeName(int boundType) {
    switch (boundType) {
        case BOUNDARY_INC:
            return "INC";
        case BOUNDARY_EXC:
            return "EXC";
        case BOUNDARY_OPEN:
            return "OPEN";
        default:
            return "";
    }
}

int BoundTypeFromName(std::string_view name) {
    name = Trimmed(name);
    for (int bound : {BOUNDARY_INC, BOUNDARY_EXC, BOUNDARY_OPEN})
        if (EqualsNoCase(name, BoundTypeName(bound))) return bound;
    return 0;
}

TChosenColumns FindChosenColumns(const std::vector<std::string>& names) {
    TChosenColumns columns;
    columns.iId = FindColumn(names, TGisFile::s_strIdField, columns.Missing);
    columns.iValue = FindColumn(names, TGisFile::s_strValueField, columns.Missing);
    columns.iName = FindColumn(names, TGisFile::s_strNameField, columns.Missing);
    return columns;
}

TChosenValues ReadChosenValues(const TChosenColumns& columns, const std::vector<std::string>& row) {
    TChosenValues values;
    if (const std::string* id = Cell(row, columns.iId)) {
        values.bHasId = true;
        values.strId = Trimmed(*id);
    }
    if (const std::string* value = Cell(row, columns.iValue)) {
        bool ok = false;
        values.dValue = ParseDouble(Trimmed(*value), &ok);
        values.bHasValue = ok;
    }
    if (const std::string* name = Cell(row, columns.iName)) {
        values.strName = Trimmed(*name);
        values.bHasName = !values.strName.empty();
    }
    return values;
}
