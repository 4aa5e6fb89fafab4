// MapInfo .mif graphics: the input is one file, loaded, written back and loaded again.

#include <tl_gis/gis/midmif/gis_file_midmif.h>
#include "round_trip.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    return tl_fuzz::LoadWriteReload<TGisFileMidMif>(data, size, "input.mif", "copy.mif");
}
