#include <tl_gis/gis/coordinates.h>

#include <cmath>

#include <tl_gis/gis/language.h>
#include <tl_gis/platform/message_box.h>
#include "gis/text_format.h"
#include "gis/text_ids.h"

int ClassifyCoordinate(double first, double second) {
    const double a = std::fabs(first);
    const double b = std::fabs(second);
    if (a <= 90.0 && b <= 180.0) return COORD_GEOGRAPHIC;
    if (a > 100000.0 || b > 100000.0) return COORD_PROJECTED;
    return COORD_OUT_OF_RANGE;  // also where a value is not a number
}

int PromptProjectedCoordinate(const char* source, double first, double second) {
    std::string format = GetText(TEXT_PROJECTED_LOOKS);
    format += GetText(TEXT_PROJECTED_VALUES);
    format += '\n';
    format += GetText(TEXT_PROJECTED_STOP);
    const std::string text = FormatText(format, {source ? source : "", first, second});
    const int answer = ShowMessageBox(text, GetText(TEXT_CAPTION), MSGBOX_YESNO | MSGBOX_ICONEXCLAMATION,
                                      TEXT_PROJECTED_LOOKS);
    return answer == ANSWER_YES ? ANSWER_YES : ANSWER_NO;
}

std::string DescribeSourceForPrompt(const char* formatPart) {
    std::string s = GetText(TEXT_SOURCE_BEFORE_FORMAT);
    s += formatPart ? formatPart : "";
    s += GetText(TEXT_SOURCE_AFTER_FORMAT);
    return s;
}
