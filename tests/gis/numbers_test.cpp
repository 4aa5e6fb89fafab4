// Number parsing: the plain-decimal shortcut must give exactly what the full conversion gives.

#include <gtest/gtest.h>

#include <charconv>
#include <cstring>
#include <string>

#include "gis/numbers.h"

namespace {

TEST(ParseDouble, PlainDecimalsMatchTheFullConversion) {
    const char* const cases[] = {
        "-93.498247",
        "45.000571",
        "0",
        "-0.0",
        ".5",
        "5.",
        "007.250",
        "9007199254740992",        // 2^53, the largest mantissa taken directly
        "0.9007199254740993",      // one more, with decimals: would round twice if taken directly
        "0.1234567890123456789",   // 19 digits
        "0.12345678901234567890",  // 20 digits
        "1.0000000000000000000001",
        "0.0000000000000000000001",   // 22 decimals
        "0.00000000000000000000001",  // 23 decimals
        "1e5",
        "2.5E-3",
        "1e",
        "12.5abc",
        "3.25.7",
        "  +17.5",
        "inf",
        "nan",
        ".",
        "-",
        "",
    };
    for (const char* text : cases) {
        std::string_view s(text);
        while (!s.empty() && s[0] == ' ') s.remove_prefix(1);
        const bool negative = !s.empty() && s[0] == '-';
        if (!s.empty() && (s[0] == '-' || s[0] == '+')) s.remove_prefix(1);
        double expected = 0.0;
        const auto [end, ec] = std::from_chars(s.data(), s.data() + s.size(), expected);
        const bool expectedOk = end != s.data() && ec == std::errc();
        if (!expectedOk) expected = 0.0;
        if (negative && expectedOk) expected = -expected;
        bool ok = false;
        const double got = ParseDouble(text, &ok);
        EXPECT_EQ(ok, expectedOk) << text;
        EXPECT_EQ(std::memcmp(&got, &expected, sizeof got), 0) << text << ": " << got << " vs " << expected;
    }
}

}  // namespace
