#pragma once
// Rows of delimited text tables (a flight CSV, the .mid half of a MapInfo pair): fields apart
// by one separator character, a field in double quotes may hold the separator, and a quote
// inside quotes is written twice.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

// Splits one row into fields[0..count): an unquoted field is trimmed of spaces and tabs (those
// that are not the separator), a quoted one keeps its text as it stands. The strings of fields
// are reused from row to row. False when a quoted field is not closed, or text other than blanks
// follows its closing quote; the fields before it are split.
bool SplitDelimitedRow(std::string_view line, char separator, std::vector<std::string>& fields,
                       std::size_t& count);
