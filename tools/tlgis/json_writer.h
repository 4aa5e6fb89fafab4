#pragma once
// A small streaming JSON writer: objects, arrays, strings and round-trip numbers.

#include <string>
#include <string_view>
#include <vector>

class TJsonWriter {
public:
    TJsonWriter& BeginObject();
    TJsonWriter& EndObject();
    TJsonWriter& BeginArray();
    TJsonWriter& EndArray();
    TJsonWriter& Key(std::string_view key);
    TJsonWriter& String(std::string_view value);
    TJsonWriter& Number(double value);
    TJsonWriter& Integer(long long value);
    TJsonWriter& Bool(bool value);
    TJsonWriter& Null();
    // A [lat, lon] pair.
    TJsonWriter& Pair(double a, double b);

    const std::string& Text() const { return m_out; }

private:
    void BeforeValue();
    std::string m_out;
    std::vector<bool> m_first;  // per open container: no member written yet
    bool m_afterKey = false;
};
