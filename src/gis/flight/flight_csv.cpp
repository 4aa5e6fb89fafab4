#include <tl_gis/gis/flight/flight_csv.h>

#include <charconv>
#include <cmath>
#include <map>

#include <tl_gis/platform/numbers.h>
#include <tl_gis/platform/result_codes.h>
#include <tl_gis/platform/text_file.h>
#include "gis/delimited_row.h"

namespace {
enum TColumn {
    COL_RUN,
    COL_TIME,
    COL_LAT,
    COL_LON,
    COL_HEADING,
    COL_SPEED,
    COL_SPRAY,
    COL_SWATH,
    COL_HEIGHT,
    COL_AGL,
    COL_LINE,
    COL_TRACK,
    COL_BOOM,
    COL_FIELD,
    COL_AIRCRAFT,
    COL_PILOT,
    COL_OFFSET,
    COL_RATE,                                // rate, rate2 .. rate10
    COL_TARGET = COL_RATE + SPRAY_CHANNELS,  // target, target2 .. target10
    COL_COUNT = COL_TARGET + SPRAY_CHANNELS,
    COL_IGNORED = -1,
};
constexpr int kRequiredColumns = COL_SWATH + 1;

const char* const kColumnNames[COL_RATE] = {"run",   "time",  "lat",      "lon",   "heading", "speed",
                                            "spray", "swath", "height",   "agl",   "line",    "track",
                                            "boom",  "field", "aircraft", "pilot", "offset"};

std::string ColumnName(int column) {
    if (column < COL_RATE) return kColumnNames[column];
    const bool rate = column < COL_TARGET;
    const int channel = column - (rate ? COL_RATE : COL_TARGET) + 1;
    std::string name = rate ? "rate" : "target";
    if (channel > 1) AppendInt(name, channel);
    return name;
}

int FindColumn(std::string_view name) {
    for (int c = 0; c < COL_COUNT; ++c)
        if (EqualsNoCase(name, ColumnName(c))) return c;
    return COL_IGNORED;
}

std::string_view Trim(std::string_view s) {
    while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) s.remove_prefix(1);
    while (!s.empty() && (s.back() == ' ' || s.back() == '\t')) s.remove_suffix(1);
    return s;
}

class TRowParser {
public:
    TRowParser(long long lineNumber, std::string& error) : m_iLine(lineNumber), m_strError(error) {}

    bool Fail(int column, std::string_view value, const char* what) {
        m_strError = "line ";
        AppendInt(m_strError, m_iLine);
        m_strError += ", column ";
        m_strError += ColumnName(column);
        m_strError += ": ";
        if (!value.empty()) {
            m_strError += '"';
            constexpr std::size_t kShown = 40;
            m_strError += value.substr(0, kShown);
            if (value.size() > kShown) m_strError += "...";
            m_strError += "\" ";
        }
        m_strError += what;
        return false;
    }

    bool Number(int column, std::string_view text, double& out) {
        std::string_view s = Trim(text);
        if (s.empty()) return Fail(column, text, "is empty");
        if (s.front() == '+') s.remove_prefix(1);
        const auto [end, ec] =
            std::from_chars(s.data(), s.data() + s.size(), out, std::chars_format::general);
        if (ec != std::errc() || end != s.data() + s.size() || !std::isfinite(out))
            return Fail(column, text, "is not a number");
        return true;
    }

    bool Range(int column, std::string_view text, double& out, double low, double high, const char* what) {
        if (!Number(column, text, out)) return false;
        if (out < low || out > high) return Fail(column, text, what);
        return true;
    }

    bool Flag(int column, std::string_view text, std::uint8_t& out) {
        const std::string_view s = Trim(text);
        if (s == "0" || s == "1") {
            out = s == "1" ? 1 : 0;
            return true;
        }
        return Fail(column, text, "is not 0 or 1");
    }

    bool Short(int column, std::string_view text, double scale, double limit, std::int16_t& out,
               const char* what) {
        double v = 0.0;
        if (!Number(column, text, v)) return false;
        const double scaled = std::round(v * scale);
        if (std::fabs(scaled) > 32767.0 || std::fabs(v) > limit) return Fail(column, text, what);
        out = static_cast<std::int16_t>(scaled);
        return true;
    }

    bool Text(int column, std::string_view text, char* field, std::size_t size, const char* what) {
        if (text.size() > size - 1) return Fail(column, text, what);
        SetSprayText(field, size, std::string(text));
        return true;
    }

    // YYYY-MM-DDThh:mm:ss[.fraction], local time; the fraction is cut to hundredths.
    bool Time(int column, std::string_view text, TSprayTime& out) {
        const std::string_view s = Trim(text);
        std::size_t i = 0;
        auto digits = [&](std::size_t n, int& value) {
            if (i + n > s.size()) return false;
            value = 0;
            for (std::size_t k = 0; k < n; ++k) {
                const char c = s[i + k];
                if (c < '0' || c > '9') return false;
                value = value * 10 + (c - '0');
            }
            i += n;
            return true;
        };
        auto separator = [&](const char* allowed) {
            if (i >= s.size()) return false;
            for (const char* a = allowed; *a; ++a)
                if (s[i] == *a) {
                    ++i;
                    return true;
                }
            return false;
        };
        const bool shaped = digits(4, out.iYear) && separator("-") && digits(2, out.iMonth) &&
                            separator("-") && digits(2, out.iDay) && separator("Tt ") &&
                            digits(2, out.iHour) && separator(":") && digits(2, out.iMinute) &&
                            separator(":") && digits(2, out.iSecond);
        if (!shaped) return Fail(column, text, "is not a local time like 2024-06-01T14:03:10.50");
        out.iHundredths = 0;
        if (i < s.size() && s[i] == '.') {
            ++i;
            int scale = 10;
            const std::size_t start = i;
            for (; i < s.size() && s[i] >= '0' && s[i] <= '9'; ++i) {
                out.iHundredths += (s[i] - '0') * scale;
                scale /= 10;
            }
            if (i == start) return Fail(column, text, "has no digits after the decimal point");
        }
        if (i != s.size()) return Fail(column, text, "has text after the seconds (a local time has no zone)");
        if (out.iYear < SPRAY_BASE_YEAR || out.iYear > SPRAY_LAST_YEAR)
            return Fail(column, text, "has a year outside 1993..2120");
        static const int kDays[12] = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
        if (out.iMonth < 1 || out.iMonth > 12) return Fail(column, text, "has a month outside 1..12");
        const bool leap = (out.iYear % 4 == 0 && out.iYear % 100 != 0) || out.iYear % 400 == 0;
        const int days = out.iMonth == 2 && !leap ? 28 : kDays[out.iMonth - 1];
        if (out.iDay < 1 || out.iDay > days)
            return Fail(column, text, "has a day that its month does not have");
        if (out.iHour > 23 || out.iMinute > 59 || out.iSecond > 59)
            return Fail(column, text, "has a time of day outside 00:00:00..23:59:59");
        return true;
    }

private:
    long long m_iLine;
    std::string& m_strError;
};

struct TRun {
    std::string strName;
    std::vector<tagSPRAYREC> Samples;
};

// Fills one sample from the fields of a row; false with the error set.
bool ParseSample(TRowParser& p, const std::vector<int>& columnOf, const std::vector<std::string>& fields,
                 tagSPRAYREC& rec) {
    auto field = [&](int column) -> std::string_view {
        const int at = columnOf[static_cast<std::size_t>(column)];
        return at < 0 ? std::string_view() : std::string_view(fields[static_cast<std::size_t>(at)]);
    };
    auto has = [&](int column) { return columnOf[static_cast<std::size_t>(column)] >= 0; };

    TSprayTime time;
    if (!p.Time(COL_TIME, field(COL_TIME), time)) return false;
    PackSprayTime(time, rec);
    double heading = 0.0, swath = 0.0, v = 0.0;
    if (!p.Range(COL_LAT, field(COL_LAT), rec.locPos.dLat, -90.0, 90.0, "is outside -90..90 degrees") ||
        !p.Range(COL_LON, field(COL_LON), rec.locPos.dLon, -180.0, 180.0, "is outside -180..180 degrees") ||
        !p.Range(COL_HEADING, field(COL_HEADING), heading, -360.0, 360.0, "is outside -360..360 degrees") ||
        !p.Range(COL_SPEED, field(COL_SPEED), rec.dSpeed, 0.0, 1000.0, "is outside 0..1000 m/s") ||
        !p.Flag(COL_SPRAY, field(COL_SPRAY), rec.bySpray) ||
        !p.Range(COL_SWATH, field(COL_SWATH), swath, 0.0, 1000.0, "is outside 0..1000 m"))
        return false;
    rec.sHeading = static_cast<std::int16_t>(std::lround(heading));
    rec.dSwathWidth = swath;

    if (has(COL_HEIGHT) &&
        !p.Short(COL_HEIGHT, field(COL_HEIGHT), 5.0, 6553.4, rec.sHeight, "is outside -6553.4..6553.4 m"))
        return false;
    if (has(COL_AGL) &&
        !p.Range(COL_AGL, field(COL_AGL), rec.dAgl, -10000.0, 10000.0, "is outside -10000..10000 m"))
        return false;
    if (has(COL_LINE)) {
        if (!p.Range(COL_LINE, field(COL_LINE), v, -32768.0, 32767.0, "is outside -32768..32767"))
            return false;
        if (v != std::floor(v)) return p.Fail(COL_LINE, field(COL_LINE), "is not a whole number");
        rec.sLine = static_cast<std::int16_t>(v);
    }
    if (has(COL_TRACK) &&
        !p.Short(COL_TRACK, field(COL_TRACK), 100.0, 327.67, rec.sTrack, "is outside -327.67..327.67 m"))
        return false;
    if (has(COL_BOOM)) {
        std::uint8_t boom = 0;
        if (!p.Flag(COL_BOOM, field(COL_BOOM), boom)) return false;
        rec.sBoom = boom;
    }
    for (int c = 0; c < SPRAY_CHANNELS; ++c) {
        if (has(COL_RATE + c)) {
            if (!p.Range(COL_RATE + c, field(COL_RATE + c), v, 0.0, 1e6, "is outside 0..1000000 L/ha"))
                return false;
            rec.afActualRate[c] = static_cast<float>(v);
        }
        if (has(COL_TARGET + c)) {
            if (!p.Range(COL_TARGET + c, field(COL_TARGET + c), v, 0.0, 1e6, "is outside 0..1000000 L/ha"))
                return false;
            rec.afTargetRate[c] = static_cast<float>(v);
        }
    }
    rec.strFieldName = std::string(field(COL_FIELD));
    if (!p.Text(COL_AIRCRAFT, field(COL_AIRCRAFT), rec.szAircraft, sizeof rec.szAircraft,
                "is longer than 10 characters") ||
        !p.Text(COL_PILOT, field(COL_PILOT), rec.szPilot, sizeof rec.szPilot, "is longer than 11 characters"))
        return false;
    const std::string_view offset = field(COL_OFFSET);
    if (EqualsNoCase(offset, "R") || EqualsNoCase(offset, "L"))
        rec.strOffset.assign(1, EqualsNoCase(offset, "R") ? 'R' : 'L');
    else if (!offset.empty())
        return p.Fail(COL_OFFSET, offset, "is not R or L");

    TFeatureSpray::SwathEnds(rec.locPos, heading, swath, rec.locSwathA, rec.locSwathB);
    return true;
}

TFlightImport Failure(int result, std::string text) {
    TFlightImport out;
    out.iResult = result;
    out.strError = std::move(text);
    return out;
}
}  // namespace

TFlightImport ReadFlightCsv(TTextFile& file) {
    std::vector<std::string> fields;
    std::size_t count = 0;
    std::string_view line;
    long long lineNumber = 0;
    std::string error;

    auto nextLine = [&]() {
        if (!file.ReadLineView(line, FLIGHT_CSV_MAX_LINE)) return 0;
        ++lineNumber;
        if (!file.LastLineComplete()) return -1;
        return 1;
    };
    auto tooLong = [&]() {
        std::string text = "line ";
        AppendInt(text, lineNumber);
        text += " is longer than ";
        AppendInt(text, static_cast<long long>(FLIGHT_CSV_MAX_LINE));
        text += " characters";
        return Failure(GISFILE_ERR_DATA, text);
    };

    // The header names the columns.
    int got = nextLine();
    if (got == 0) return Failure(GISFILE_ERR_DATA, "the file is empty: a header row is required");
    if (got < 0) return tooLong();
    if (line.size() >= 3 && line.substr(0, 3) == "\xEF\xBB\xBF") line.remove_prefix(3);
    if (!SplitDelimitedRow(line, ',', fields, count))
        return Failure(GISFILE_ERR_DATA, "line 1: a quoted name is badly formed");
    const std::size_t columnCount = count;
    std::vector<int> columnOf(COL_COUNT, -1);
    for (std::size_t i = 0; i < count; ++i) {
        const int column = FindColumn(fields[i]);
        if (column == COL_IGNORED) continue;
        if (columnOf[static_cast<std::size_t>(column)] >= 0)
            return Failure(GISFILE_ERR_DATA, "line 1: column " + ColumnName(column) + " appears twice");
        columnOf[static_cast<std::size_t>(column)] = static_cast<int>(i);
    }
    std::string missing;
    for (int c = 0; c < kRequiredColumns; ++c) {
        if (columnOf[static_cast<std::size_t>(c)] >= 0) continue;
        missing += missing.empty() ? "" : ", ";
        missing += ColumnName(c);
    }
    if (!missing.empty())
        return Failure(GISFILE_ERR_DATA, "line 1: the header lacks the required column(s) " + missing +
                                             " (a header row naming run, time, lat, lon, heading, speed, "
                                             "spray and swath is required)");

    std::vector<TRun> runs;
    std::map<std::string, std::size_t, std::less<>> runIndex;
    while ((got = nextLine()) != 0) {
        if (got < 0) return tooLong();
        if (Trim(line).empty()) continue;
        if (!SplitDelimitedRow(line, ',', fields, count)) {
            std::string text = "line ";
            AppendInt(text, lineNumber);
            return Failure(GISFILE_ERR_DATA,
                           text + ": a quoted field is not closed, or text follows its closing quote");
        }
        if (count != columnCount) {
            std::string text = "line ";
            AppendInt(text, lineNumber);
            text += " has ";
            AppendInt(text, static_cast<long long>(count));
            text += " fields, the header has ";
            AppendInt(text, static_cast<long long>(columnCount));
            return Failure(GISFILE_ERR_DATA, text);
        }
        TRowParser parser(lineNumber, error);
        const std::string& run = fields[static_cast<std::size_t>(columnOf[COL_RUN])];
        if (run.empty()) {
            parser.Fail(COL_RUN, run, "is empty");
            return Failure(GISFILE_ERR_DATA, error);
        }
        tagSPRAYREC rec;
        if (!ParseSample(parser, columnOf, fields, rec)) return Failure(GISFILE_ERR_DATA, error);
        auto it = runIndex.find(run);
        if (it == runIndex.end()) {
            it = runIndex.emplace(run, runs.size()).first;
            runs.push_back({run, {}});
        }
        runs[it->second].Samples.push_back(std::move(rec));
    }

    TFlightImport out;
    out.Sprays.reserve(runs.size());
    for (TRun& run : runs) {
        const int n = static_cast<int>(run.Samples.size());
        auto spray = std::make_unique<TFeatureSpray>(n);
        if (spray->m_iNumRecs != n)
            return Failure(GISFILE_ERR_DATA, "not enough memory for run " + run.strName);
        for (int i = 0; i < n; ++i) spray->m_pRecs[i] = std::move(run.Samples[static_cast<std::size_t>(i)]);
        spray->m_strId = run.strName;
        spray->CalculateGeoExtents();
        out.Sprays.push_back(std::move(spray));
    }
    return out;
}

TFlightImport ReadFlightCsvFile(const char* path) {
    TTextFile file;
    if (!file.Open(path, TTextFile::modeRead))
        return Failure(GISFILE_ERR_OPEN, std::string("cannot open ") + (path ? path : "(no name)"));
    return ReadFlightCsv(file);
}
