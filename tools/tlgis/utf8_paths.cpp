#include "utf8_paths.h"

#ifdef _WIN32
#include <windows.h>
// CommandLineToArgvW
#include <shellapi.h>
#endif

std::filesystem::path PathOf(const std::string& utf8) {
    return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

std::string Utf8Of(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return std::string(text.begin(), text.end());
}

std::vector<std::string> Utf8Arguments(int argc, char** argv) {
#ifdef _WIN32
    int count = 0;
    if (wchar_t** wide = CommandLineToArgvW(GetCommandLineW(), &count)) {
        std::vector<std::string> arguments;
        for (int i = 0; i < count; ++i) arguments.push_back(Utf8Of(std::filesystem::path(wide[i])));
        LocalFree(wide);
        if (count == argc) return arguments;
    }
#endif
    return std::vector<std::string>(argv, argv + argc);
}
