#include "exchange_feature.h"

#include <algorithm>
#include <cmath>

#include <tl_gis/platform/numbers.h>

TPropertyValue TPropertyValue::Text(std::string text) {
    TPropertyValue value;
    value.eType = PROPERTY_TEXT;
    value.strText = std::move(text);
    return value;
}

TPropertyValue TPropertyValue::Number(double number, int decimals) {
    TPropertyValue value;
    value.eType = PROPERTY_NUMBER;
    value.dNumber = number;
    value.iDecimals = decimals;
    return value;
}

std::string TPropertyValue::AsText() const {
    switch (eType) {
        case PROPERTY_TEXT:
            return strText;
        case PROPERTY_NUMBER:
            return FormatRoundTrip(dNumber);
        case PROPERTY_BOOLEAN:
            return dNumber != 0.0 ? "true" : "false";
        default:
            return {};
    }
}

bool TPropertyValue::AsNumber(double& number) const {
    if (eType == PROPERTY_NUMBER) {
        number = dNumber;
        return std::isfinite(number);
    }
    if (eType != PROPERTY_TEXT) return false;
    bool ok = false;
    number = ParseDouble(strText, &ok);
    return ok && std::isfinite(number);
}

const TPropertyValue* FindProperty(const TProperties& properties, std::string_view name) {
    for (const auto& [key, value] : properties)
        if (EqualsNoCase(key, name)) return &value;
    return nullptr;
}

void AppendDecimals(std::string& out, double value, int decimals) {
    if (!std::isfinite(value)) {
        out += "null";
        return;
    }
    const std::size_t start = out.size();
    AppendFixed(out, value, decimals);
    if (out.find('.', start) == std::string::npos) return;
    while (out.back() == '0') out.pop_back();
    if (out.back() == '.') out.pop_back();
    if (out.compare(start, std::string::npos, "-0") == 0) out.erase(start, 1);
}

void AppendPropertyNumber(std::string& out, const TPropertyValue& value) {
    if (!std::isfinite(value.dNumber))
        out += "null";
    else if (value.iDecimals >= 0)
        AppendDecimals(out, value.dNumber, value.iDecimals);
    else
        out += FormatRoundTrip(value.dNumber);
}

bool IsFinitePosition(const tagLOC& loc) {
    return std::isfinite(loc.dLat) && std::isfinite(loc.dLon);
}

std::string LineAndColumn(std::string_view text, std::ptrdiff_t offset) {
    const std::size_t end =
        std::min(text.size(), static_cast<std::size_t>(std::max<std::ptrdiff_t>(0, offset)));
    long long line = 1;
    std::size_t lineStart = 0;
    for (std::size_t i = 0; i < end; ++i) {
        if (text[i] == '\n') {
            ++line;
            lineStart = i + 1;
        }
    }
    return "line " + std::to_string(line) + ", column " + std::to_string(end - lineStart + 1);
}

bool CutAtNul(std::string& text) {
    const auto nul = text.find('\0');
    if (nul == std::string::npos) return false;
    text.resize(nul);
    return true;
}

void SetProperty(TProperties& properties, std::string_view name, TPropertyValue value) {
    for (auto& [key, old] : properties) {
        if (EqualsNoCase(key, name)) {
            old = std::move(value);
            return;
        }
    }
    properties.emplace_back(std::string(name), std::move(value));
}
