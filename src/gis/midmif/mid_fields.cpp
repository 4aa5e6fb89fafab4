#include "gis/midmif/mid_fields.h"

#include <tl_gis/platform/numbers.h>
#include "platform/units.h"

namespace {
constexpr int kBaseYear = 1993;

unsigned Bits(std::uint32_t value, int first, int count) {
    return (value >> first) & ((1u << count) - 1u);
}
}  // namespace

char MidDelimiterChar(int delimiter) {
    switch (delimiter) {
        case 0:
            return ',';
        case 1:
            return '\t';
        default:
            return ' ';
    }
}

void AppendMidDate(std::string& out, std::uint8_t monthYear, std::uint32_t timeStamp) {
    const unsigned month = Bits(monthYear, 0, 4);
    if (month > 12) {
        out += "00:00:00";
        return;
    }
    const unsigned day = Bits(timeStamp, 24, 5);
    const unsigned year = kBaseYear + (Bits(timeStamp, 29, 3) << 4 | Bits(monthYear, 4, 4));
    AppendIntWidth(out, month, 2, true);
    out += ':';
    AppendIntWidth(out, day, 2, true);
    out += ':';
    AppendIntWidth(out, year, 4, false);
}

void AppendMidTime(std::string& out, std::uint32_t timeStamp) {
    const unsigned hundredths = Bits(timeStamp, 0, 7);
    const unsigned seconds = Bits(timeStamp, 7, 6);
    const unsigned minutes = Bits(timeStamp, 13, 6);
    const unsigned hours = Bits(timeStamp, 19, 5);
    if (hundredths > 99 || seconds > 59 || minutes > 59 || hours > 23) {
        out += "00:00:00.00";
        return;
    }
    AppendIntWidth(out, hours, 2, true);
    out += ':';
    AppendIntWidth(out, minutes, 2, true);
    out += ':';
    AppendIntWidth(out, seconds, 2, true);
    out += '.';
    AppendIntWidth(out, hundredths, 2, true);
}

double ConvertMidRate(double rate, int metric, int rateUnits) {
    if (metric != 0) return rate;
    if (rateUnits == MID_RATE_UNITS_VOLUME) return rate * GALLONS_PER_ACRE_PER_LITRE_PER_HECTARE;
    if (rateUnits == MID_RATE_UNITS_MASS) return rate * POUNDS_PER_ACRE_PER_KILOGRAM_PER_HECTARE;
    return rate;
}

void QuoteMidField(std::string& out, std::size_t start, char delimiter) {
    if (start > out.size()) return;
    const char breaking[] = {delimiter, '"', '\0'};
    if (out.find_first_of(breaking, start) == std::string::npos) return;
    std::string field = out.substr(start);
    out.resize(start);
    out += '"';
    for (const char c : field) {
        if (c == '"') out += '"';
        out += c;
    }
    out += '"';
}

void AppendMidSprayRow(std::string& out, std::string_view date, char delimiter, const TMidSprayRow& row,
                       bool quoteFields) {
    std::size_t start = out.size();
    // Ends the field begun at start and opens the next one.
    const auto next = [&] {
        if (quoteFields) QuoteMidField(out, start, delimiter);
        out += delimiter;
        start = out.size();
    };
    out += date;
    next();
    AppendMidTime(out, row.dwTimeStamp);
    next();
    AppendFixedWidth(out, row.dSpeed * MPH_PER_METRE_PER_SECOND, 5, 1);
    next();
    AppendIntWidth(out, row.iHeading, 3, true);
    next();
    // Whole feet, cut toward zero.
    AppendIntWidth(out, static_cast<long long>(row.iHeight / 5.0 * FEET_PER_METRE), 5, true);
    next();
    out += " ON";
    next();
    AppendFixedWidth(out, row.dFlowRate, 10, 4);
    next();
    out += ' ';
    if (quoteFields) QuoteMidField(out, start, delimiter);
}
