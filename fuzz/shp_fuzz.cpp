// Shapefiles: the input packs the main file, the index and the attribute table (in that
// order) as tl_fuzz::PackInput does; they are written side by side and the main file loaded.

#include <tl_gis/gis/shp/gis_file_shp.h>
#include <tl_gis/hostmap/map_layer.h>
#include "fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    tl_fuzz::PrepareInput(size);
    const auto files = tl_fuzz::SplitInput(data, size, 3);
    const std::string path = tl_fuzz::WriteScratchFile("input.shp", files[0]);
    tl_fuzz::WriteScratchFile("input.shx", files[1]);
    tl_fuzz::WriteScratchFile("input.dbf", files[2]);
    TMapLayer layer;
    TGisFileShp reader;
    reader.LoadFile(path.c_str(), &layer, nullptr);
    return 0;
}
