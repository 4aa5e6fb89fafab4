#pragma once
// printf-style formatting of texts that come from language files.
//
// The format text is data, not code: a specifier without a matching argument produces nothing,
// and an argument of another type than the specifier asks for is converted, so a damaged or
// translated language file can never read beyond the arguments given.

#include <initializer_list>
#include <string>
#include <string_view>

class TTextArg {
public:
    TTextArg(int v) : m_kind(Integer), m_i(v) {}                                    // NOLINT
    TTextArg(long v) : m_kind(Integer), m_i(v) {}                                   // NOLINT
    TTextArg(long long v) : m_kind(Integer), m_i(v) {}                              // NOLINT
    TTextArg(unsigned v) : m_kind(Integer), m_i(v) {}                               // NOLINT
    TTextArg(unsigned long v) : m_kind(Integer), m_i(static_cast<long long>(v)) {}  // NOLINT
    TTextArg(double v) : m_kind(Real), m_d(v) {}                                    // NOLINT
    TTextArg(const char* v) : m_kind(Text), m_s(v ? v : "") {}                      // NOLINT
    TTextArg(const std::string& v) : m_kind(Text), m_s(v) {}                        // NOLINT

    enum Kind { Integer, Real, Text };
    Kind m_kind;
    long long m_i = 0;
    double m_d = 0.0;
    std::string_view m_s;
};

// Supports the flags "-+ 0#", width, precision, the length modifiers h l ll, and the
// conversions d i u x X o c f F e E g G s %.
std::string FormatText(std::string_view format, std::initializer_list<TTextArg> args);
