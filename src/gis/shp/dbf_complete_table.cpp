#include "gis/shp/dbf_complete_table.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include <tl_gis/platform/numbers.h>
#include "gis/attribute_columns.h"

namespace {
// The widest field dBASE holds.
constexpr int kMaxWidth = 254;
constexpr int kDecimals = 6;
// "0.000000": no value column is narrower, so that its decimals always fit.
constexpr int kMinValueWidth = kDecimals + 2;

void Widen(TDbfField& field, std::size_t length) {
    field.iWidth = std::max(field.iWidth, static_cast<int>(std::min<std::size_t>(length, kMaxWidth)));
}
}  // namespace

void TDbfCompleteTable::Clear() {
    m_Fields = {{{COMPLETE_COLUMN_ID, 'C', 1, 0},
                 {COMPLETE_COLUMN_BOUND, 'C', 1, 0},
                 {COMPLETE_COLUMN_VALUE, 'N', kMinValueWidth, kDecimals},
                 {COMPLETE_COLUMN_NAME, 'C', 1, 0}}};
}

const std::string& TDbfCompleteTable::ValueText(double value) {
    // Layers repeat their values (every boundary 0, a few rates): the last text is kept.
    const auto bits = std::bit_cast<std::uint64_t>(value);
    if (m_bValueKept && bits == m_uValueBits) return m_strValue;
    m_strValue.clear();
    if (std::isfinite(value)) AppendFixed(m_strValue, value, kDecimals);
    m_bValueKept = true;
    m_uValueBits = bits;
    return m_strValue;
}

void TDbfCompleteTable::Fit(const TCompleteRow& row) {
    Widen(m_Fields[0], row.strId.size());
    Widen(m_Fields[1], std::string_view(BoundTypeName(row.iBound)).size());
    // A number too wide for any field is written blank, so it widens nothing.
    if (ValueText(row.dValue).size() <= kMaxWidth) Widen(m_Fields[2], m_strValue.size());
    Widen(m_Fields[3], row.strName.size());
}

const std::string& TDbfCompleteTable::Format(TDbfRecordWriter& writer, const TCompleteRow& row) {
    writer.Begin(m_Fields, true);
    writer.AddLeftText(row.strId);
    writer.AddLeftText(BoundTypeName(row.iBound));
    // A number wider than the widest field is left out rather than cut into another number.
    const std::string& value = ValueText(row.dValue);
    writer.AddText(value.size() <= static_cast<std::size_t>(m_Fields[2].iWidth) ? std::string_view(value)
                                                                                : std::string_view());
    writer.AddLeftText(row.strName);
    return writer.Bytes();
}
