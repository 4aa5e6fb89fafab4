#pragma once
// Resident memory of the benchmark process, for the peak-memory counters.

#include <fstream>
#include <string>

// A value of /proc/self/status in kB ("VmRSS:", "VmHWM:"), -1 when it cannot be read.
inline long ReadStatusKb(const char* key) {
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line))
        if (line.rfind(key, 0) == 0) return std::stol(line.substr(std::string(key).size()));
    return -1;
}

// Starts a new high-water mark, so that VmHWM tells the peak of what follows.
inline void ResetPeakMemory() {
    std::ofstream("/proc/self/clear_refs") << "5";
}
