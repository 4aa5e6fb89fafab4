// Replays inputs through a fuzz target's entry point without libFuzzer: every file named on
// the command line, and every file below every folder named, once each in name order. Used
// by ctest on the committed corpora, and to re-run a crashing input in a debugger.

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz_support.h"

namespace fs = std::filesystem;

int main(int argc, char** argv) {
    std::vector<fs::path> inputs;
    for (int i = 1; i < argc; ++i) {
        const fs::path arg(argv[i]);
        if (fs::is_directory(arg)) {
            for (const auto& entry : fs::recursive_directory_iterator(arg))
                if (entry.is_regular_file()) inputs.push_back(entry.path());
        } else if (fs::is_regular_file(arg)) {
            inputs.push_back(arg);
        } else {
            std::fprintf(stderr, "%s: no such file or folder\n", argv[i]);
            return 2;
        }
    }
    std::sort(inputs.begin(), inputs.end());
    if (inputs.empty()) {
        std::fprintf(stderr, "no inputs to replay\n");
        return 2;
    }
    for (const fs::path& path : inputs) {
        std::ifstream in(path, std::ios::binary);
        const std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        std::fprintf(stderr, "replay %s (%zu bytes)\n", path.string().c_str(), bytes.size());
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    }
    std::printf("%zu inputs replayed\n", inputs.size());
    return 0;
}
