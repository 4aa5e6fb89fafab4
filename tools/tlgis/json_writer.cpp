#include "json_writer.h"

#include <cmath>
#include <cstdio>

#include <tl_gis/platform/numbers.h>
#include <tl_gis/platform/text_encoding.h>

void TJsonWriter::BeforeValue() {
    if (m_afterKey) {
        m_afterKey = false;
        return;
    }
    if (!m_first.empty()) {
        if (!m_first.back()) m_out += ',';
        m_first.back() = false;
    }
}

TJsonWriter& TJsonWriter::BeginObject() {
    BeforeValue();
    m_out += '{';
    m_first.push_back(true);
    return *this;
}

TJsonWriter& TJsonWriter::EndObject() {
    m_out += '}';
    m_first.pop_back();
    return *this;
}

TJsonWriter& TJsonWriter::BeginArray() {
    BeforeValue();
    m_out += '[';
    m_first.push_back(true);
    return *this;
}

TJsonWriter& TJsonWriter::EndArray() {
    m_out += ']';
    m_first.pop_back();
    return *this;
}

TJsonWriter& TJsonWriter::Key(std::string_view key) {
    String(key);
    m_out += ':';
    m_afterKey = true;
    return *this;
}

TJsonWriter& TJsonWriter::String(std::string_view text) {
    BeforeValue();
    m_out += '"';
    // Texts are UTF-8 where the file said so (the complete profile converts them) and 8-bit
    // Windows Latin 1 otherwise: valid UTF-8 passes as it stands, any other byte is taken as
    // Windows Latin 1, so the output is valid UTF-8 either way.
    const std::string value = ToUtf8(text, ENCODING_UTF8);
    for (unsigned char c : value) {
        switch (c) {
            case '"':
                m_out += "\\\"";
                break;
            case '\\':
                m_out += "\\\\";
                break;
            case '\n':
                m_out += "\\n";
                break;
            case '\r':
                m_out += "\\r";
                break;
            case '\t':
                m_out += "\\t";
                break;
            default:
                if (c < 0x20) {
                    char buf[8];
                    std::snprintf(buf, sizeof buf, "\\u%04x", c);
                    m_out += buf;
                } else {
                    m_out += static_cast<char>(c);
                }
        }
    }
    m_out += '"';
    return *this;
}

TJsonWriter& TJsonWriter::Number(double value) {
    BeforeValue();
    if (!std::isfinite(value)) {
        m_out += "null";  // JSON has no NaN or infinity
    } else {
        m_out += FormatRoundTrip(value);
    }
    return *this;
}

TJsonWriter& TJsonWriter::Integer(long long value) {
    BeforeValue();
    m_out += std::to_string(value);
    return *this;
}

TJsonWriter& TJsonWriter::Bool(bool value) {
    BeforeValue();
    m_out += value ? "true" : "false";
    return *this;
}

TJsonWriter& TJsonWriter::Null() {
    BeforeValue();
    m_out += "null";
    return *this;
}

TJsonWriter& TJsonWriter::Pair(double a, double b) {
    BeginArray();
    Number(a);
    Number(b);
    return EndArray();
}
