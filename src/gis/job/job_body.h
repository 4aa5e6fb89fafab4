#pragma once
// The loop shared by every record body of a JOB file.

#include <cstdint>

#include <tl_gis/platform/text_file.h>
#include "gis/job/job_tokens.h"

template <class Handler>
void ReadJobBody(TTextFile& file, Handler&& handle) {
    std::int64_t position = file.GetPosition();
    long long line = GetJobNextLine();
    while (!ReadJobTokens(file)) {
        if (g_szJobTokens[0][0] == '.') {
            file.Seek(position);
            SetJobNextLine(line);
            return;
        }
        if (!handle()) return;
        position = file.GetPosition();
        line = GetJobNextLine();
    }
}
