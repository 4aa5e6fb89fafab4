// Number parsing: the plain-decimal shortcut must give exactly what the full conversion gives.

#include <gtest/gtest.h>

#include <charconv>
#include <cstdio>
#include <cstring>
#include <string>

#include <tl_gis/platform/numbers.h>

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

TEST(AppendFixed, ShortFormsMatchPrintf) {
    const struct {
        double value;
        int decimals;
    } cases[] = {
        {0.5, 0},     {1.5, 0},    {2.5, 0},      {0.125, 2},      {0.375, 2},  // exact halves: to even
        {-0.0, 6},    {-1e-9, 6},  {-93.4992, 6}, {45.0000005, 6}, {1e-7, 6},  {4e9, 6},
        {3.99e15, 0}, {4.5e15, 0}, {0.1, 15},     {123.456, 1},    {1e300, 2}, {-7.0, 0},
    };
    for (const auto& c : cases) {
        char expected[400];
        std::snprintf(expected, sizeof expected, "%.*f", c.decimals, c.value);
        std::string got;
        AppendFixed(got, c.value, c.decimals);
        EXPECT_EQ(got, expected) << c.value << " with " << c.decimals << " decimals";
    }
}

}  // namespace
