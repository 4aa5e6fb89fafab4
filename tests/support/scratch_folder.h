#pragma once
// A new, empty folder under the system's temporary folder, named by a prefix and a random
// number: what mkdtemp does, on Windows too, which has none. Empty when none can be made.

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <random>
#include <string>

inline std::string MakeScratchFolder(const std::string& prefix) {
    namespace fs = std::filesystem;
    std::error_code ec;
    const fs::path base = fs::temp_directory_path(ec);
    if (ec) return {};
    std::random_device device;
    std::mt19937_64 random(
        device() ^ static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count()));
    for (int attempt = 0; attempt < 100; ++attempt) {
        const fs::path candidate = base / (prefix + std::to_string(random() % 1000000000));
        if (fs::create_directory(candidate, ec)) return candidate.string();
    }
    return {};
}
