#include "gis/job/job_tokens.h"

#include <cmath>

#include <tl_gis/platform/text_file.h>

char g_szJobTokens[JOB_TOKEN_COUNT][JOB_TOKEN_CHARS + 1];

namespace {
long long s_lJobLine = 0;
long long s_lJobNextLine = 1;
}  // namespace

long long GetJobLine() {
    return s_lJobLine;
}

long long GetJobNextLine() {
    return s_lJobNextLine;
}

void SetJobNextLine(long long line) {
    s_lJobNextLine = line;
}

void TokenizeJobLine(const char* line) {
    const unsigned char* p = reinterpret_cast<const unsigned char*>(line);
    for (int t = 0; t < JOB_TOKEN_COUNT; ++t) {
        while (*p != 0 && (*p <= 32 || *p >= 128)) ++p;
        int n = 0;
        while (n < JOB_TOKEN_CHARS && *p >= 33 && *p <= 127) g_szJobTokens[t][n++] = static_cast<char>(*p++);
        g_szJobTokens[t][n] = '\0';
    }
}

bool ReadJobTokens(TTextFile& file) {
    char line[JOB_LINE_CHARS + 1];
    if (!file.ReadLine(line, sizeof line)) return true;
    s_lJobLine = s_lJobNextLine;
    // Only the last piece of a long line ends it.
    if (file.LastLineComplete()) ++s_lJobNextLine;
    TokenizeJobLine(line);
    return false;
}

bool IsAcceptedJobCoordinate(double lat, double lon) {
    const double a = std::fabs(lat), b = std::fabs(lon);
    return a <= 90.0 && b <= 180.0 && !(a <= 1.0 && b <= 1.0);
}
