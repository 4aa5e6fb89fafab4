#include "platform/text_encoding.h"

#include <cstdint>

#include <tl_gis/platform/numbers.h>

namespace {
// Unicode of the Windows Latin 1 bytes 0x80..0x9F (0 where the code page leaves one unused, kept
// as the C1 control of the same number); the other bytes are their own code points.
constexpr std::uint16_t kHigh1252[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

void AppendCodePoint(std::string& out, std::uint32_t c) {
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

std::uint32_t From1252(unsigned char b) {
    return b >= 0x80 && b < 0xA0 ? kHigh1252[b - 0x80] : b;
}

// Length of the valid UTF-8 sequence at text[i] with its code point, or 0 when it is invalid.
std::size_t DecodeUtf8(std::string_view text, std::size_t i, std::uint32_t& c) {
    const auto b0 = static_cast<unsigned char>(text[i]);
    std::size_t length = b0 < 0x80 ? 1 : (b0 >> 5) == 6 ? 2 : (b0 >> 4) == 14 ? 3 : (b0 >> 3) == 30 ? 4 : 0;
    if (length == 0 || i + length > text.size()) return 0;
    c = length == 1 ? b0 : b0 & (0x7F >> length);
    for (std::size_t k = 1; k < length; ++k) {
        const auto b = static_cast<unsigned char>(text[i + k]);
        if ((b & 0xC0) != 0x80) return 0;
        c = (c << 6) | (b & 0x3F);
    }
    // No overlong forms, no surrogates, nothing past U+10FFFF.
    static constexpr std::uint32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
    if (c < kLeast[length] || (c >= 0xD800 && c <= 0xDFFF) || c > 0x10FFFF) return 0;
    return length;
}
}  // namespace

bool EncodingFromName(std::string_view name, TTextEncoding& encoding) {
    std::string key;
    for (char ch : name)
        if (ch != ' ' && ch != '"' && ch != '\'' && ch != '-' && ch != '_' && ch != '\r' && ch != '\n' &&
            ch != '\t')
            key += ch;
    for (const char* utf8 : {"UTF8", "65001"})
        if (EqualsNoCase(key, utf8)) {
            encoding = ENCODING_UTF8;
            return true;
        }
    for (const char* latin : {"1252", "CP1252", "Windows1252", "WindowsLatin1", "ANSI1252", "ISO88591",
                              "Latin1", "88591", "ISO885915", "CP819"})
        if (EqualsNoCase(key, latin)) {
            encoding = ENCODING_WINDOWS_1252;
            return true;
        }
    return false;
}

std::string ToUtf8(std::string_view text, TTextEncoding from) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        std::uint32_t c = 0;
        const std::size_t length = from == ENCODING_UTF8 ? DecodeUtf8(text, i, c) : 0;
        if (length > 0) {
            out.append(text.substr(i, length));
            i += length;
            continue;
        }
        AppendCodePoint(out, From1252(static_cast<unsigned char>(text[i])));
        ++i;
    }
    return out;
}

std::string FromUtf8(std::string_view text, TTextEncoding to) {
    return FromUtf8(text, to, nullptr);
}

void AppendUtf8(std::string& out, std::uint32_t codePoint) {
    AppendCodePoint(out, codePoint);
}

std::string FromUtf8(std::string_view text, TTextEncoding to, void (*escape)(std::uint32_t, std::string&)) {
    if (to == ENCODING_UTF8) return ToUtf8(text, ENCODING_UTF8);
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        std::uint32_t c = 0;
        const std::size_t length = DecodeUtf8(text, i, c);
        if (length == 0) {
            out += '?';
            ++i;
            continue;
        }
        i += length;
        int byte = -1;
        if (c < 0x80 || (c >= 0xA0 && c <= 0xFF)) {
            byte = static_cast<int>(c);
        } else {
            for (int k = 0; k < 32; ++k)
                if (kHigh1252[k] == c) byte = 0x80 + k;
        }
        if (byte >= 0)
            out += static_cast<char>(byte);
        else if (escape != nullptr)
            escape(c, out);
        else
            out += '?';
    }
    return out;
}
