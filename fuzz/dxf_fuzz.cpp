// DXF drawings: the input is one file, loaded, written back and loaded again. An input whose last
// byte is odd (a drawing that ends in CR rather than LF, say) does all three in the complete
// profile, so that its curves, points and texts are fuzzed as well as the system's own reading.

#include <tl_gis/gis/dxf/gis_file_dxf.h>
#include "round_trip.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    TGisFile::s_bCompleteProfile = size > 0 && (data[size - 1] & 1) != 0;
    return tl_fuzz::LoadWriteReload<TGisFileDxf>(data, size, "input.dxf", "copy.dxf");
}
