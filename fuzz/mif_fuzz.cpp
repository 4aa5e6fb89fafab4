// MapInfo pairs. An input whose first byte has its top bit clear is a .mif file alone, read in
// the default profile; otherwise the bytes after that first one pack the .mif and the .mid (as
// tl_fuzz::PackInput does), read in the complete profile. Either way what loads is written
// back in the same profile and read again.

#include <tl_gis/gis/midmif/gis_file_midmif.h>
#include "complete_profile.h"
#include "round_trip.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0 || (data[0] & 0x80) == 0)
        return tl_fuzz::LoadWriteReload<TGisFileMidMif>(data, size, "input.mif", "copy.mif");
    tl_fuzz::PrepareInput(size);
    const auto files = tl_fuzz::SplitInput(data + 1, size - 1, 2);
    const std::string path = tl_fuzz::WriteScratchFile("input.mif", files[0]);
    tl_fuzz::WriteScratchFile("input.mid", files[1]);
    const TCompleteProfile complete;
    return tl_fuzz::ReloadScratchFile<TGisFileMidMif>(path, "copy.mif");
}
