// DXF drawings: the input is one file, loaded, written back and loaded again.

#include <tl_gis/gis/dxf/gis_file_dxf.h>
#include "round_trip.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    return tl_fuzz::LoadWriteReload<TGisFileDxf>(data, size, "input.dxf", "copy.dxf");
}
