// The names of the files a shapefile export writes, and the name its tables give the recorded
// data file.

#include <tl_gis/gis/shp/gis_file_shp.h>
#include "gis/shp/shp_record_writer.h"

namespace {
const char* SpraySuffix(int format) {
    switch (format) {
        case ESRI_SPRAY_POLYGONS:
            return "_Spray_Polys";
        case ESRI_SPRAY_POLYLINES:
            return "_Spray_PL";
        case ESRI_SPRAY_POINTS:
            return "_Spray_Pts";
        case ESRI_SPRAY_SPOTS:
            return "_Spray_Spot";
        default:
            return "";
    }
}

const char* NonSpraySuffix(int format) {
    switch (format) {
        case ESRI_NONSPRAY_POLYLINES:
            return "_NonSpray_PL";
        case ESRI_NONSPRAY_POINTS:
            return "_NonSpray_Pts";
        default:
            return "";
    }
}

bool IsFolderSeparator(char c) {
    return c == '\\' || c == '/';
}

// Everything from the last '.' of the whole path removed, a '.' in a folder name included: the
// system's programs name their outputs this way, and files beside them are found by it.
std::string WithoutExtension(const std::string& path) {
    return path.substr(0, path.rfind('.'));
}
}  // namespace

std::string TGisFileShp::GetSprayOutputStem(const std::string& target) {
    return WithoutExtension(target) + SpraySuffix(s_eESRISprayFormat);
}

std::string TGisFileShp::GetNonSprayOutputStem(const std::string& sourcePath) {
    return WithoutExtension(sourcePath) + NonSpraySuffix(s_eESRINonSprayFormat);
}

std::string ShpCompanionStem(const std::string& target, const char* suffix) {
    return WithoutExtension(target) + suffix;
}

std::string TGisFileShp::GetSprayOutputFile(const std::string& target, const char* extension) {
    return ShpTriplePath(GetSprayOutputStem(target), extension);
}

std::string TGisFileShp::GetNonSprayOutputFile(const std::string& sourcePath, const char* extension) {
    return ShpTriplePath(GetNonSprayOutputStem(sourcePath), extension);
}

std::string TGisFileShp::FileutilGetName(const std::string& path) {
    // Cut at the first '.' of the whole path, then keep the last component; recorded data paths
    // come from either kind of system, so both slashes separate folders, and a drive's ':' does
    // when no slash is left.
    const std::string cut = path.substr(0, path.find('.'));
    std::size_t separator = std::string::npos;
    for (std::size_t i = cut.size(); i-- > 0;) {
        if (IsFolderSeparator(cut[i])) {
            separator = i;
            break;
        }
    }
    if (separator == std::string::npos) separator = cut.rfind(':');
    if (separator == std::string::npos) return "N/A";
    return cut.substr(separator + 1);
}
