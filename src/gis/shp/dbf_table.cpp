#include "gis/shp/dbf_table.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <iterator>

#include <tl_gis/platform/numbers.h>
#include "gis/byte_order.h"
#include "platform/system_services.h"

namespace {
// Columns 1..13 are the same in both unit systems; the units show in the names after them.
constexpr TDbfField kSprayCommon[] = {
    {"SEGMENTID", 'C', 8, 0},   {"CUSTOMER", 'C', 28, 0}, {"FILE_NAME", 'C', 24, 0},
    {"FILE_DATE", 'C', 12, 0},  {"AIRCRAFT", 'C', 12, 0}, {"PILOT", 'C', 12, 0},
    {"FIELD_NAME", 'C', 20, 0}, {"OFFSET", 'C', 5, 0},    {"LINE_NUM", 'C', 5, 0},
    {"EVENT_TIME", 'C', 14, 0}, {"POS_LAT", 'C', 17, 0},  {"POS_LON", 'C', 17, 0},
    {"SPEED_MPH", 'N', 8, 1},
};
constexpr TDbfField kSprayUsUnits[] = {
    {"TRK_FT", 'N', 8, 1},     {"SWIDTH_FT", 'N', 8, 1},  {"HGT_FT", 'N', 8, 1},
    {"AGL_FT", 'N', 8, 1},     {"AREA_US", 'N', 10, 6},   {"TSRATE_US", 'N', 10, 6},
    {"ASRATE_US", 'N', 10, 6}, {"SPRAY_STAT", 'C', 8, 0}, {"BOOM_STAT", 'C', 8, 0},
};
constexpr TDbfField kSprayMetricUnits[] = {
    {"TRK_M", 'N', 8, 1},        {"SWIDTH_M", 'N', 8, 1},   {"HGT_M", 'N', 8, 1},
    {"AGL_M", 'N', 8, 1},        {"AREA_M", 'N', 10, 6},    {"TSRATE_LTRS", 'N', 10, 6},
    {"ASRATE_LTRS", 'N', 10, 6}, {"SPRAY_STAT", 'C', 8, 0}, {"BOOM_STAT", 'C', 8, 0},
};

template <std::size_t A, std::size_t B>
constexpr std::array<TDbfField, A + B> Join(const TDbfField (&a)[A], const TDbfField (&b)[B]) {
    std::array<TDbfField, A + B> joined{};
    for (std::size_t i = 0; i < A; ++i) joined[i] = a[i];
    for (std::size_t i = 0; i < B; ++i) joined[A + i] = b[i];
    return joined;
}

constexpr auto kSprayUs = Join(kSprayCommon, kSprayUsUnits);
constexpr auto kSprayMetric = Join(kSprayCommon, kSprayMetricUnits);
const TDbfField kNonSprayUs[] = {
    {"SAMPLEID", 'C', 8, 0}, {"LINE_NUM", 'C', 5, 0},  {"EVENT_TIME", 'C', 14, 0}, {"POS_LAT", 'C', 17, 0},
    {"POS_LON", 'C', 17, 0}, {"SPEED_MPH", 'N', 8, 1}, {"HGT_ELLIPF", 'N', 8, 1},  {"AGL_FT", 'N', 8, 1},
};
const TDbfField kNonSprayMetric[] = {
    {"SAMPLEID", 'C', 8, 0}, {"LINE_NUM", 'C', 5, 0},  {"EVENT_TIME", 'C', 14, 0}, {"POS_LAT", 'C', 17, 0},
    {"POS_LON", 'C', 17, 0}, {"SPEED_MPH", 'N', 8, 1}, {"HGT_ELLIPM", 'N', 8, 1},  {"AGL_M", 'N', 8, 1},
};
constexpr std::size_t kMaxNameChars = 10;
}  // namespace

std::span<const TDbfField> GetDbfFields(TDbfTable table, bool metric) {
    switch (table) {
        case DBF_TABLE_SPRAY:
            return metric ? std::span<const TDbfField>(kSprayMetric) : std::span<const TDbfField>(kSprayUs);
        case DBF_TABLE_NONSPRAY:
            return metric ? std::span<const TDbfField>(kNonSprayMetric)
                          : std::span<const TDbfField>(kNonSprayUs);
        case DBF_TABLE_NONE:
            break;
    }
    return {};
}

int GetDbfRecordLength(std::span<const TDbfField> fields) {
    int length = 1;
    for (const TDbfField& f : fields) length += f.iWidth;
    return length;
}

TDbfDate GetDbfDateToday() {
    const TLocalTime now = GetLocalTimeNow();
    if (now.iYear < 1900 || now.iYear > 1900 + 255) return {};
    return {now.iYear - 1900, now.iMonth, now.iDay};
}

void AppendDbfHeader(std::string& out, std::span<const TDbfField> fields, std::uint32_t recordCount,
                     const TDbfDate& date) {
    unsigned char header[DBF_FILE_HEADER_BYTES] = {};
    header[0] = 3;
    header[1] = static_cast<unsigned char>(date.iYearsSince1900);
    header[2] = static_cast<unsigned char>(date.iMonth);
    header[3] = static_cast<unsigned char>(date.iDay);
    writeLE32(header + 4, recordCount);
    writeLE16(header + 8, static_cast<std::uint16_t>(DBF_DESCRIPTOR_BYTES * fields.size() + 33));
    writeLE16(header + 10, static_cast<std::uint16_t>(GetDbfRecordLength(fields)));
    out.append(reinterpret_cast<const char*>(header), sizeof header);
    for (const TDbfField& f : fields) {
        unsigned char descriptor[DBF_DESCRIPTOR_BYTES] = {};
        // Names longer than the descriptor holds keep their first ten characters.
        std::memcpy(descriptor, f.pszName, std::min(std::strlen(f.pszName), kMaxNameChars));
        descriptor[11] = static_cast<unsigned char>(f.cType);
        descriptor[16] = static_cast<unsigned char>(f.iWidth);
        descriptor[17] = static_cast<unsigned char>(f.iDecimals);
        out.append(reinterpret_cast<const char*>(descriptor), sizeof descriptor);
    }
    out += static_cast<char>(DBF_HEADER_END);
}

void TDbfRecordWriter::Begin(std::span<const TDbfField> fields, bool utf8) {
    m_Fields = fields;
    m_bUtf8 = utf8;
    m_nNext = 0;
    m_nOffset = 1;
    // The whole record blank at once: the deletion flag and every field not yet filled.
    m_strRecord.assign(static_cast<std::size_t>(GetDbfRecordLength(fields)), ' ');
}

std::size_t TDbfRecordWriter::FitLength(std::string_view text, std::size_t width) const {
    if (text.size() <= width) return text.size();
    std::size_t length = width;
    // UTF-8 continuation bytes are 10xxxxxx: never cut in front of one.
    if (m_bUtf8)
        while (length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80) --length;
    return length;
}

void TDbfRecordWriter::Place(std::string_view text, bool left) {
    if (m_nNext >= m_Fields.size()) return;
    const auto width = static_cast<std::size_t>(m_Fields[m_nNext++].iWidth);
    const std::size_t length = FitLength(text, width);
    if (length > 0)
        std::memcpy(m_strRecord.data() + m_nOffset + (left ? 0 : width - length), text.data(), length);
    m_nOffset += width;
}

void TDbfRecordWriter::AddText(std::string_view text) {
    Place(text, false);
}

void TDbfRecordWriter::AddLeftText(std::string_view text) {
    Place(text, true);
}

void TDbfRecordWriter::AddNumber(double value, int decimals) {
    m_strScratch.clear();
    // A blank numeric field reads as no value, which is what an unknown number is.
    if (!std::isfinite(value)) {
        AddText({});
        return;
    }
    AppendFixed(m_strScratch, value, decimals);
    AddText(m_strScratch);
}

void TDbfRecordWriter::AddInteger(long long value) {
    m_strScratch.clear();
    AppendInt(m_strScratch, value);
    AddText(m_strScratch);
}

void TDbfRecordWriter::AddFlag(int flag) {
    AddText(flag == 1 ? "T" : flag == 0 ? "F" : "?");
}

const std::string& TDbfRecordWriter::Bytes() {
    return m_strRecord;
}
