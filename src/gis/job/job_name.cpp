#include "gis/job/job_name.h"

#include <cstring>

#include <tl_gis/platform/numbers.h>
#include "gis/text_ids.h"

namespace {
constexpr std::size_t kMaxJobName = 20;
}

TJobFileName ParseJobFileName(const char* path, int format) {
    TJobFileName name;
    const std::string full = path != nullptr ? path : "";
    const auto slash = full.find_last_of("\\/");
    const std::string file = slash == std::string::npos ? full : full.substr(slash + 1);
    const auto dot = file.find('.');
    name.strBase = file.substr(0, dot);
    name.strRest = dot == std::string::npos ? std::string() : file.substr(dot);

    bool nonDigit = false;
    for (char c : name.strBase)
        if (c < '0' || c > '9') nonDigit = true;

    if (format == 0 || format == 1) {
        name.lJobNumber = ParseInt(name.strBase);
        if (nonDigit || name.lJobNumber < 1 || name.lJobNumber > 999) name.iErrorText = TEXT_JOB_NAME_NUMBER;
    } else if (format == 2) {
        if (name.strBase.size() > kMaxJobName) name.iErrorText = TEXT_JOB_NAME_LENGTH;
    }

    const auto begin = name.strBase.find_first_not_of(' ');
    if (begin != std::string::npos) {
        const auto end = name.strBase.find_last_not_of(' ');
        name.strJobName = name.strBase.substr(begin, end - begin + 1).substr(0, kMaxJobName);
    }
    return name;
}
