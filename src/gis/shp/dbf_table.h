#pragma once
// dBASE III attribute tables as the shapefile writer produces them: the four constant field
// lists (spray and non-spray data, US and metric units), the file header with its field
// descriptors, and one record writer that every table uses. Knows nothing of maps.

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

constexpr std::size_t DBF_FILE_HEADER_BYTES = 32;
constexpr std::size_t DBF_DESCRIPTOR_BYTES = 32;
constexpr unsigned char DBF_HEADER_END = 0x0D;
constexpr unsigned char DBF_FILE_END = 0x1A;

struct TDbfField {
    const char* pszName;  // longer than 10 characters only where the descriptor cuts it
    char cType;           // 'C' text, 'N' number
    int iWidth;
    int iDecimals;
};

// Which table a file carries; boundary exports have a table without fields.
enum TDbfTable : int { DBF_TABLE_NONE = 0, DBF_TABLE_SPRAY = 1, DBF_TABLE_NONSPRAY = 2 };

std::span<const TDbfField> GetDbfFields(TDbfTable table, bool metric);
// Sum of the field widths plus the deletion byte.
int GetDbfRecordLength(std::span<const TDbfField> fields);

// The date bytes of a header: years since 1900, month, day (all 0 when unknown).
struct TDbfDate {
    int iYearsSince1900 = 0;
    int iMonth = 0;
    int iDay = 0;
};
// Today's local date.
TDbfDate GetDbfDateToday();

// Appends the 32-byte file header, one descriptor per field and the 0x0D end byte.
void AppendDbfHeader(std::string& out, std::span<const TDbfField> fields, std::uint32_t recordCount,
                     const TDbfDate& date);

// Builds one record: the deletion blank, then every field's text right-aligned in its width
// (padded with blanks on the left, a longer text cut to its leftmost characters). Fields are
// filled in table order; fields left unfilled are blank, so a record always has exactly the
// table's record length. The text buffer is reused from record to record.
class TDbfRecordWriter {
public:
    // utf8: the texts are UTF-8, and one cut to its field's width loses whole characters only.
    void Begin(std::span<const TDbfField> fields, bool utf8 = false);
    void AddText(std::string_view text);
    // A text left-aligned, padded on the right with blanks, as dBASE keeps texts.
    void AddLeftText(std::string_view text);
    // Fixed decimals, as "%.Nf" formats them; blank for NaN and infinities.
    void AddNumber(double value, int decimals);
    void AddInteger(long long value);
    // "T" for 1, "F" for 0, "?" for any other flag value.
    void AddFlag(int flag);
    // The record bytes, exactly the table's record length.
    const std::string& Bytes();

private:
    // The bytes of the text that fit a width, cut before a character when the texts are UTF-8.
    std::size_t FitLength(std::string_view text, std::size_t width) const;
    // Puts the text into the next field, right- or left-aligned.
    void Place(std::string_view text, bool left);

    std::span<const TDbfField> m_Fields;
    bool m_bUtf8 = false;
    std::size_t m_nNext = 0;
    std::size_t m_nOffset = 0;  // of the next field in the record
    std::string m_strRecord;
    std::string m_strScratch;
};
