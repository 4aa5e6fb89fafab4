#pragma once
// The table the complete profile gives its boundary, line and point shapefiles: ID, BOUND (INC,
// EXC or OPEN), VALUE (six decimals) and NAME, each column as wide as its widest value, texts in
// UTF-8. Read back with those columns chosen, the rows give the elements their ids, values and
// names again. Knows nothing of maps.

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "gis/shp/dbf_table.h"

struct TCompleteRow {
    std::string_view strId;
    int iBound = 0;
    double dValue = 0.0;
    std::string_view strName;
};

class TDbfCompleteTable {
public:
    TDbfCompleteTable() { Clear(); }
    // Back to the narrowest columns.
    void Clear();
    // Widens the columns for a row; texts longer than a dBASE field holds are cut when written.
    void Fit(const TCompleteRow& row);
    std::span<const TDbfField> GetFields() const { return m_Fields; }
    // The row's bytes, exactly the table's row length.
    const std::string& Format(TDbfRecordWriter& writer, const TCompleteRow& row);

private:
    const std::string& ValueText(double value);

    std::array<TDbfField, 4> m_Fields;
    std::string m_strValue;  // the text of the value last formatted
    bool m_bValueKept = false;
    std::uint64_t m_uValueBits = 0;
};
