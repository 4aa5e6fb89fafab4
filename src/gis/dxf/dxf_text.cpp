#include "gis/dxf/dxf_text.h"

#include <cstdint>

#include <tl_gis/platform/numbers.h>

namespace {

bool IsHexDigit(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

int HexValue(char c) {
    return c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10;
}

// "\U+XXXX" at text[i]: appends the character and returns the length of the escape, 0 when
// there is none.
std::size_t TakeUnicodeEscape(std::string_view text, std::size_t i, std::string& out) {
    if (text.size() - i < 7 || text[i] != '\\' || (text[i + 1] | 0x20) != 'u' || text[i + 2] != '+') return 0;
    std::uint32_t c = 0;
    for (std::size_t k = i + 3; k < i + 7; ++k) {
        if (!IsHexDigit(text[k])) return 0;
        c = c * 16 + static_cast<std::uint32_t>(HexValue(text[k]));
    }
    if (c >= 0xD800 && c <= 0xDFFF) return 0;
    AppendUtf8(out, c);
    return 7;
}

// The special codes of TEXT at text[i] ("%%d", ...): appends what they stand for and returns
// their length, 0 when there is none.
std::size_t TakePercentCode(std::string_view text, std::size_t i, std::string& out) {
    if (text.size() - i < 3 || text[i] != '%' || text[i + 1] != '%') return 0;
    const char code = static_cast<char>(text[i + 2] | 0x20);
    switch (code) {
        case 'd':
            AppendUtf8(out, 0x00B0);  // degree sign
            return 3;
        case 'p':
            AppendUtf8(out, 0x00B1);  // plus-minus sign
            return 3;
        case 'c':
            AppendUtf8(out, 0x2300);  // diameter sign
            return 3;
        case 'u':
        case 'o':
            return 3;  // underline and overline switches
        case '%':
            out += '%';
            return 3;
        default:
            break;
    }
    if (text.size() - i >= 5 && text[i + 2] >= '0' && text[i + 2] <= '9' && text[i + 3] >= '0' &&
        text[i + 3] <= '9' && text[i + 4] >= '0' && text[i + 4] <= '9') {
        const int c = (text[i + 2] - '0') * 100 + (text[i + 3] - '0') * 10 + (text[i + 4] - '0');
        if (c > 0 && c < 256) {
            AppendUtf8(out, static_cast<std::uint32_t>(c));
            return 5;
        }
    }
    return 0;
}

// An MTEXT formatting code at text[i] (a backslash and its letter, or a brace): appends what it
// stands for in plain text and returns its length, 0 when there is none.
std::size_t TakeMTextCode(std::string_view text, std::size_t i, std::string& out) {
    if (text[i] == '{' || text[i] == '}') return 1;
    if (text[i] != '\\' || i + 1 >= text.size()) return 0;
    switch (text[i + 1]) {
        case 'P':
        case 'N':
        case '~':
            out += ' ';
            return 2;
        case '\\':
        case '{':
        case '}':
            out += text[i + 1];
            return 2;
        case 'L':
        case 'l':
        case 'O':
        case 'o':
        case 'K':
        case 'k':
            return 2;
        case 'A':
        case 'C':
        case 'c':
        case 'F':
        case 'f':
        case 'H':
        case 'Q':
        case 'T':
        case 'W':
        case 'p': {
            // Codes with an argument run to the next ';'.
            const std::size_t end = text.find(';', i + 2);
            return end == std::string_view::npos ? text.size() - i : end + 1 - i;
        }
        case 'S': {
            // Stacked text "\S1^2;" reads as 1/2.
            std::size_t k = i + 2;
            for (; k < text.size() && text[k] != ';'; ++k)
                out += text[k] == '^' || text[k] == '#' ? '/' : text[k];
            return (k < text.size() ? k + 1 : k) - i;
        }
        default:
            return 0;
    }
}

void AppendUnicodeEscape(std::uint32_t c, std::string& out) {
    static constexpr char kHex[] = "0123456789ABCDEF";
    if (c > 0xFFFF) {  // \U+ holds four digits only
        out += '?';
        return;
    }
    out += "\\U+";
    for (int shift = 12; shift >= 0; shift -= 4) out += kHex[(c >> shift) & 0xF];
}

}  // namespace

TTextEncoding DxfTextEncoding(std::string_view acadVersion, std::string_view codePage) {
    // Release names are "AC" and four digits; AC1021 is the 2007 release, the first in UTF-8.
    if (acadVersion.size() >= 6 && acadVersion.starts_with("AC") && acadVersion.substr(2, 4) >= "1021")
        return ENCODING_UTF8;
    TTextEncoding encoding = ENCODING_WINDOWS_1252;
    if (!EncodingFromName(codePage, encoding)) encoding = ENCODING_WINDOWS_1252;
    return encoding;
}

std::string DxfTextToName(std::string_view value, TTextEncoding encoding, bool mtext) {
    const std::string text = ToUtf8(value, encoding);
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        std::size_t taken = TakeUnicodeEscape(text, i, out);
        if (taken == 0) taken = TakePercentCode(text, i, out);
        if (taken == 0 && mtext) taken = TakeMTextCode(text, i, out);
        if (taken == 0) {
            out += text[i];
            taken = 1;
        }
        i += taken;
    }
    return out;
}

std::string DxfNameToText(std::string_view name, std::size_t maxLength) {
    std::string clean;
    clean.reserve(name.size());
    for (std::size_t i = 0; i < name.size(); ++i) {
        const auto c = static_cast<unsigned char>(name[i]);
        if (c < 0x20 || c == 0x7F)
            clean += ' ';
        else if (c == '%' && i + 1 < name.size() && name[i + 1] == '%')
            clean += "%%%";
        else
            clean += name[i];
    }
    std::string text = FromUtf8(clean, ENCODING_WINDOWS_1252, AppendUnicodeEscape);
    if (text.size() > maxLength) {
        // An escape is seven characters; one cut short would read as plain text.
        const std::size_t escape = text.rfind("\\U+", maxLength);
        text.resize(escape != std::string::npos && escape + 7 > maxLength ? escape : maxLength);
    }
    return text;
}
