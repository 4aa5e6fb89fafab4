#include "gis/delimited_row.h"

namespace {
// Blanks around fields: spaces and tabs, unless one of them separates the fields.
bool IsFieldBlank(char c, char separator) {
    return (c == ' ' || c == '\t') && c != separator;
}
}  // namespace

bool SplitDelimitedRow(std::string_view line, char separator, std::vector<std::string>& fields,
                       std::size_t& count) {
    count = 0;
    std::size_t i = 0;
    for (;;) {
        if (fields.size() <= count) fields.emplace_back();
        std::string& field = fields[count++];
        field.clear();
        const std::size_t start = i;
        while (i < line.size() && IsFieldBlank(line[i], separator)) ++i;
        if (i < line.size() && line[i] == '"') {
            ++i;
            for (;;) {
                if (i >= line.size()) return false;
                if (line[i] == '"') {
                    if (i + 1 < line.size() && line[i + 1] == '"') {
                        field += '"';
                        i += 2;
                        continue;
                    }
                    ++i;
                    break;
                }
                field += line[i++];
            }
            // Only blanks may follow the closing quote.
            while (i < line.size() && IsFieldBlank(line[i], separator)) ++i;
            if (i < line.size() && line[i] != separator) return false;
        } else {
            i = start;
            std::size_t end = line.find(separator, i);
            if (end == std::string_view::npos) end = line.size();
            std::size_t first = i;
            std::size_t last = end;
            while (first < last && IsFieldBlank(line[first], separator)) ++first;
            while (last > first && IsFieldBlank(line[last - 1], separator)) --last;
            field.assign(line.substr(first, last - first));
            i = end;
        }
        if (i >= line.size()) return true;
        ++i;  // the separator
    }
}
