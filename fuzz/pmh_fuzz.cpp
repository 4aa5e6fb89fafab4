// PMH rate maps: the input is one file, loaded, written back and loaded again.

#include <tl_gis/gis/pmh/gis_file_pmh.h>
#include "round_trip.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    return tl_fuzz::LoadWriteReload<TGisFilePmh>(data, size, "input.pmh", "copy.pmh");
}
