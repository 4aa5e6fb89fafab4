#include <tl_gis/gis/coordinates.h>

#include <cmath>
#include <limits>

#include <tl_gis/gis/language.h>
#include <tl_gis/platform/message_box.h>
#include "gis/coordinate_transform.h"
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

TCoordinateTransformHook g_CoordinateTransformHook;

void SetCoordinateTransform(TCoordinateTransform transform, void* userData) {
    g_CoordinateTransformHook.pfnTransform = transform;
    g_CoordinateTransformHook.pUserData = transform != nullptr ? userData : nullptr;
}

TCoordinateTransform GetCoordinateTransform(void** userData) {
    if (userData != nullptr) *userData = g_CoordinateTransformHook.pUserData;
    return g_CoordinateTransformHook.pfnTransform;
}

bool MapPairThroughTransform(double& lat, double& lon) {
    double mappedLat = 0.0, mappedLon = 0.0;
    // Pairs that are not numbers are not handed over: no transform maps them.
    const bool mapped = std::isfinite(lat) && std::isfinite(lon) &&
                        g_CoordinateTransformHook.pfnTransform(g_CoordinateTransformHook.pUserData, lon, lat,
                                                               &mappedLat, &mappedLon) &&
                        std::isfinite(mappedLat) && std::isfinite(mappedLon);
    if (mapped) {
        lat = mappedLat;
        lon = mappedLon;
        return true;
    }
    lat = lon = std::numeric_limits<double>::quiet_NaN();
    return false;
}
