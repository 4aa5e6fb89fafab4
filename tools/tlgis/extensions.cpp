#include "extensions.h"

#include <tl_gis/gis/gis_map.h>

namespace {
std::vector<TToolExtension>& Registry() {
    static std::vector<TToolExtension> registry;
    return registry;
}
}  // namespace

int RegisterToolExtension(TToolExtension extension) {
    Registry().push_back(std::move(extension));
    return static_cast<int>(Registry().size());
}

const std::vector<TToolExtension>& ToolExtensions() {
    return Registry();
}

int ToolFileType(const std::string& path) {
    const TLGIS_FILE_TYPE own = TGisMap::GetGisFileType(path.c_str());
    if (own != GIS_FILE_NONE) return own;
    for (const TToolExtension& ext : Registry())
        if (ext.fileType)
            if (const int type = ext.fileType(path); type != 0) return type;
    return GIS_FILE_NONE;
}

const TToolExtension* ExtensionOfType(int type) {
    for (const TToolExtension& ext : Registry())
        if (ext.typeName && ext.typeName(type) != nullptr) return &ext;
    return nullptr;
}

const char* ToolTypeName(int type) {
    const TToolExtension* ext = ExtensionOfType(type);
    return ext != nullptr ? ext->typeName(type) : TGisMap::GetTypeName(static_cast<TLGIS_FILE_TYPE>(type));
}

std::string ToolFileExtensions() {
    std::string text = ".job, .pmh, .dxf, .mif, .shp";
    for (const TToolExtension& ext : Registry())
        for (const std::string& extension : ext.fileExtensions) text += ", " + extension;
    return text;
}
