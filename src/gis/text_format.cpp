#include "gis/text_format.h"

#include <cmath>
#include <cstdio>
#include <limits>
#include <vector>

namespace {

// A real given to an integer conversion: its integer part, held to the range of long long
// (NaN gives 0), since a value outside it has no integer form to convert to.
long long RealAsInteger(double v) {
    if (std::isnan(v)) return 0;
    if (v >= 9223372036854775807.0) return std::numeric_limits<long long>::max();
    if (v <= -9223372036854775808.0) return std::numeric_limits<long long>::min();
    return static_cast<long long>(v);
}

}  // namespace

std::string FormatText(std::string_view format, std::initializer_list<TTextArg> args) {
    const std::vector<TTextArg> list(args);
    std::size_t next = 0;
    std::string out;
    out.reserve(format.size() + 32);
    std::size_t i = 0;
    while (i < format.size()) {
        const char c = format[i];
        if (c != '%') {
            out += c;
            ++i;
            continue;
        }
        // Collect one specifier: %[flags][width][.precision][length]conversion
        const std::size_t start = i;
        std::size_t j = i + 1;
        std::string directive = "%";
        while (j < format.size() && std::string_view("-+ 0#").find(format[j]) != std::string_view::npos)
            directive += format[j++];
        int width = 0;
        while (j < format.size() && format[j] >= '0' && format[j] <= '9') {
            if (width < 1000) width = width * 10 + (format[j] - '0');
            ++j;
        }
        int precision = -1;
        if (j < format.size() && format[j] == '.') {
            ++j;
            precision = 0;
            while (j < format.size() && format[j] >= '0' && format[j] <= '9') {
                if (precision < 400) precision = precision * 10 + (format[j] - '0');
                ++j;
            }
        }
        while (j < format.size() &&
               (format[j] == 'h' || format[j] == 'l' || format[j] == 'L' || format[j] == 'q'))
            ++j;
        if (j >= format.size()) {  // a dangling '%' at the end is shown as it stands
            out.append(format.substr(i));
            break;
        }
        const char conv = format[j];
        i = j + 1;
        if (conv == '%') {
            out += '%';
            continue;
        }
        if (width > 0) directive += std::to_string(width);
        if (precision >= 0) directive += "." + std::to_string(precision);
        const TTextArg* arg = next < list.size() ? &list[next] : nullptr;
        if (std::string_view("diuxXocfFeEgGs").find(conv) == std::string_view::npos) {
            out.append(format.substr(start, i - start));  // not a conversion: shown as written
            continue;
        }
        ++next;
        if (arg == nullptr) continue;
        char buf[512];
        int n = 0;
        switch (conv) {
            case 'd':
            case 'i': {
                const long long v = arg->m_kind == TTextArg::Integer ? arg->m_i
                                    : arg->m_kind == TTextArg::Real  ? RealAsInteger(arg->m_d)
                                                                     : 0;
                n = std::snprintf(buf, sizeof buf, (directive + "lld").c_str(), v);
                break;
            }
            case 'u':
            case 'x':
            case 'X':
            case 'o': {
                const unsigned long long v =
                    arg->m_kind == TTextArg::Integer ? static_cast<unsigned long long>(arg->m_i)
                    : arg->m_kind == TTextArg::Real ? static_cast<unsigned long long>(RealAsInteger(arg->m_d))
                                                    : 0;
                n = std::snprintf(buf, sizeof buf, (directive + "ll" + conv).c_str(), v);
                break;
            }
            case 'c': {
                const int v = arg->m_kind == TTextArg::Integer ? static_cast<int>(arg->m_i) : ' ';
                n = std::snprintf(buf, sizeof buf, (directive + "c").c_str(), v);
                break;
            }
            case 's': {
                std::string text;
                if (arg->m_kind == TTextArg::Text)
                    text = std::string(arg->m_s);
                else if (arg->m_kind == TTextArg::Integer)
                    text = std::to_string(arg->m_i);
                else
                    text = std::to_string(arg->m_d);
                out += [&] {
                    std::string s = text;
                    if (precision >= 0 && static_cast<std::size_t>(precision) < s.size())
                        s.resize(static_cast<std::size_t>(precision));
                    if (static_cast<int>(s.size()) < width) {
                        const std::string pad(static_cast<std::size_t>(width) - s.size(), ' ');
                        s = directive.find('-') != std::string::npos ? s + pad : pad + s;
                    }
                    return s;
                }();
                continue;
            }
            default: {
                const double v = arg->m_kind == TTextArg::Real      ? arg->m_d
                                 : arg->m_kind == TTextArg::Integer ? static_cast<double>(arg->m_i)
                                                                    : 0.0;
                n = std::snprintf(buf, sizeof buf, (directive + conv).c_str(), v);
                break;
            }
        }
        if (n > 0)
            out.append(
                buf, static_cast<std::size_t>(n) < sizeof buf ? static_cast<std::size_t>(n) : sizeof buf - 1);
    }
    return out;
}
