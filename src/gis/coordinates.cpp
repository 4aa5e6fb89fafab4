#include <tl_gis/gis/coordinates.h>

#include <cmath>

#include <tl_gis/gis/language.h>
#include <tl_gis/platform/message_box.h>
#include "gis/text_format.h"

int ClassifyCoordinate(double first, double second) {
    const double a = std::fabs(first);
    const double b = std::fabs(second);
    if (a <= 90.0 && b <= 180.0) return COORD_GEOGRAPHIC;
    if (a > 100000.0 || b > 100000.0) return COORD_PROJECTED;
    return COORD_OUT_OF_RANGE;  // also where a value is not a number
}

int PromptProjectedCoordinate(const char* source, double first, double second) {
    std::string format = GetText(2039);
    format += GetText(2040);
    format += '\n';
    format += GetText(2041);
    const std::string text = FormatText(format, {source ? source : "", first, second});
    const int answer = ShowMessageBox(text, GetText(5054), MSGBOX_YESNO | MSGBOX_ICONEXCLAMATION, 2039);
    return answer == ANSWER_YES ? ANSWER_YES : ANSWER_NO;
}

std::string DescribeSourceForPrompt(const char* formatPart) {
    std::string s = GetText(1010);
    s += formatPart ? formatPart : "";
    s += GetText(1011);
    return s;
}
