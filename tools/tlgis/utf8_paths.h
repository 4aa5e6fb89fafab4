#pragma once
// The tool keeps every file name in UTF-8, as the library takes them. On Windows a
// std::filesystem::path made from a std::string reads it in the ANSI code page, and main's
// arguments arrive in that code page too; these conversions keep a name such as
// "Feld Müller" whole on every system.

#include <filesystem>
#include <string>
#include <vector>

std::filesystem::path PathOf(const std::string& utf8);
std::string Utf8Of(const std::filesystem::path& path);
// The program's arguments in UTF-8: on Windows from the wide-character command line.
std::vector<std::string> Utf8Arguments(int argc, char** argv);
