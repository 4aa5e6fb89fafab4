// A program built against the installed library: classifies two names and makes a layer.
#include <tl_gis/tl_gis.h>

#include <cstdio>

int main() {
    if (TGisMap::GetGisFileType("field.JOB") != GIS_FILE_JOB) return 1;
    if (TGisMap::GetGisFileType("plan.mid") != GIS_FILE_NONE) return 1;
    TMapLayer layer;
    std::printf("ok %d\n", static_cast<int>(layer.m_Elements.size()));
    return 0;
}
