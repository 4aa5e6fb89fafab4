#include <tl_gis/platform/numbers.h>

#include <charconv>
#include <climits>
#include <cmath>
#include <cstdint>
#include <limits>

namespace {
bool IsSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f';
}

char Lower(char c) {
    return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string_view SkipSpace(std::string_view s) {
    std::size_t i = 0;
    while (i < s.size() && IsSpace(s[i])) ++i;
    return s.substr(i);
}
// Plain decimals ("-93.498247", "45", "0.5"), nearly every number in the files read, are
// converted here: the digits as an integer of at most 2^53 divided by a power of ten of at
// most 10^22 are two exact doubles, so the one division rounds as a full conversion does.
// Anything else (exponents, many digits, inf/nan) returns null and goes to from_chars.
const char* ScanPlainDecimal(const char* first, const char* last, double& value) {
    static constexpr double kPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                              1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                              1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    const auto digit = [](char c) { return static_cast<unsigned>(c - '0'); };
    std::uint64_t mantissa = 0;
    const char* p = first;
    for (; p != last && digit(*p) < 10; ++p) mantissa = mantissa * 10 + digit(*p);
    std::size_t digits = static_cast<std::size_t>(p - first), fraction = 0;
    if (p != last && *p == '.') {
        const char* decimals = ++p;
        for (; p != last && digit(*p) < 10; ++p) mantissa = mantissa * 10 + digit(*p);
        fraction = static_cast<std::size_t>(p - decimals);
        digits += fraction;
    }
    if (digits == 0 || digits > 19 || fraction > 22 || mantissa > (std::uint64_t{1} << 53)) return nullptr;
    if (p != last && (*p == 'e' || *p == 'E')) return nullptr;
    value = static_cast<double>(mantissa) / kPowersOfTen[fraction];
    return p;
}
}  // namespace

const char* ScanUnsignedDouble(const char* first, const char* last, double& value) {
    if (const char* end = ScanPlainDecimal(first, last, value)) return end;
    double v = 0.0;
    const auto [end, ec] = std::from_chars(first, last, v, std::chars_format::general);
    if (end == first || (ec != std::errc() && ec != std::errc::result_out_of_range)) return first;
    if (ec == std::errc::result_out_of_range) {
        // strtod saturates to infinity on overflow and goes to 0 on underflow; from_chars leaves the
        // value untouched, so decide by the exponent's sign.
        const std::string_view digits(first, static_cast<std::size_t>(end - first));
        const auto e = digits.find_first_of("eE");
        const bool tiny = e != std::string_view::npos && e + 1 < digits.size() && digits[e + 1] == '-';
        v = tiny ? 0.0 : std::numeric_limits<double>::infinity();
    }
    value = v;
    return end;
}

double ParseDouble(std::string_view text, bool* ok) {
    std::string_view s = SkipSpace(text);
    bool negative = false;
    if (!s.empty() && (s[0] == '+' || s[0] == '-')) {
        negative = s[0] == '-';
        s.remove_prefix(1);
    }
    double value = 0.0;
    const bool found = ScanUnsignedDouble(s.data(), s.data() + s.size(), value) != s.data();
    if (ok) *ok = found;
    if (!found) return 0.0;
    return negative ? -value : value;
}

long long ParseInt64(std::string_view text, bool* ok) {
    std::string_view s = SkipSpace(text);
    bool negative = false;
    if (!s.empty() && (s[0] == '+' || s[0] == '-')) {
        negative = s[0] == '-';
        s.remove_prefix(1);
    }
    unsigned long long magnitude = 0;
    const auto [end, ec] = std::from_chars(s.data(), s.data() + s.size(), magnitude, 10);
    const bool found = end != s.data();
    if (ok) *ok = found;
    if (!found) return 0;
    constexpr unsigned long long maxPos = static_cast<unsigned long long>(LLONG_MAX);
    if (ec == std::errc::result_out_of_range || magnitude > maxPos + (negative ? 1 : 0))
        return negative ? LLONG_MIN : LLONG_MAX;
    if (negative) return magnitude == maxPos + 1 ? LLONG_MIN : -static_cast<long long>(magnitude);
    return static_cast<long long>(magnitude);
}

int ParseInt(std::string_view text, bool* ok) {
    const long long v = ParseInt64(text, ok);
    if (v > INT_MAX) return INT_MAX;
    if (v < INT_MIN) return INT_MIN;
    return static_cast<int>(v);
}

namespace {
// Coordinates and rates with a few decimals, most of what the writers print: |value| x 10^d is
// computed within half a unit in its last place of the exact product, so unless its fraction is
// that close to one half, rounding it to the nearest integer rounds the exact value the same way,
// and the digits come from that integer. False (nothing appended) for anything else.
bool AppendFixedShort(std::string& out, double value, int decimals) {
    static constexpr double kPowersOfTen[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                              1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    if (decimals < 0 || decimals > 15) return false;
    const double scaled = std::fabs(value) * kPowersOfTen[decimals];
    if (!(scaled < 4e15)) return false;
    const double whole = std::floor(scaled);
    const double fraction = scaled - whole;
    if (std::fabs(fraction - 0.5) <= scaled * 0x1p-52 + 0x1p-60) return false;
    char digits[24];
    auto [end, ec] = std::to_chars(digits, digits + sizeof digits,
                                   static_cast<std::uint64_t>(whole) + (fraction > 0.5 ? 1u : 0u));
    if (ec != std::errc()) return false;
    auto count = static_cast<std::size_t>(end - digits);
    const auto places = static_cast<std::size_t>(decimals);
    if (std::signbit(value)) out += '-';
    if (count <= places) {
        // 0.000123: a zero before the point and zeros after it
        out += '0';
        if (places > 0) out += '.';
        out.append(places - count, '0');
        out.append(digits, count);
        return true;
    }
    out.append(digits, count - places);
    if (places > 0) {
        out += '.';
        out.append(end - places, places);
    }
    return true;
}
}  // namespace

void AppendFixed(std::string& out, double value, int decimals) {
    if (std::isnan(value)) {
        out += std::signbit(value) ? "-nan" : "nan";
        return;
    }
    if (std::isinf(value)) {
        out += value < 0 ? "-inf" : "inf";
        return;
    }
    if (AppendFixedShort(out, value, decimals)) return;
    char buf[400];  // the largest double has 309 integer digits
    const auto [end, ec] = std::to_chars(buf, buf + sizeof buf, value, std::chars_format::fixed, decimals);
    if (ec == std::errc()) out.append(buf, end);
}

std::string FormatFixed(double value, int decimals) {
    std::string s;
    AppendFixed(s, value, decimals);
    return s;
}

void AppendInt(std::string& out, long long value) {
    char buf[24];
    const auto [end, ec] = std::to_chars(buf, buf + sizeof buf, value);
    if (ec == std::errc()) out.append(buf, end);
}

void AppendFixedWidth(std::string& out, double value, int width, int decimals) {
    const std::size_t start = out.size();
    AppendFixed(out, value, decimals);
    const std::size_t written = out.size() - start;
    if (width > 0 && written < static_cast<std::size_t>(width))
        out.insert(start, static_cast<std::size_t>(width) - written, ' ');
}

void AppendIntWidth(std::string& out, long long value, int width, bool zeroPad) {
    const std::size_t start = out.size();
    AppendInt(out, value);
    const std::size_t written = out.size() - start;
    if (width <= 0 || written >= static_cast<std::size_t>(width)) return;
    const std::size_t pad = static_cast<std::size_t>(width) - written;
    if (zeroPad)
        out.insert(start + (value < 0 ? 1 : 0), pad, '0');
    else
        out.insert(start, pad, ' ');
}

std::string FormatRoundTrip(double value) {
    if (!std::isfinite(value)) return std::isnan(value) ? "nan" : (value < 0 ? "-inf" : "inf");
    char buf[64];
    const auto [end, ec] = std::to_chars(buf, buf + sizeof buf, value);
    return ec == std::errc() ? std::string(buf, end) : std::string("0");
}

bool EqualsNoCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (Lower(a[i]) != Lower(b[i])) return false;
    return true;
}

bool StartsWithNoCase(std::string_view text, std::string_view prefix) {
    return text.size() >= prefix.size() && EqualsNoCase(text.substr(0, prefix.size()), prefix);
}
