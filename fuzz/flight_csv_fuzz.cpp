// Flight-data CSV files: the input is one file. Every run read has its spray statistics
// computed, as the spray exports do.

#include <tl_gis/gis/flight/flight_csv.h>
#include <tl_gis/platform/text_file.h>
#include "fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    tl_fuzz::PrepareInput(size);
    TTextFile file;
    file.OpenMemory({reinterpret_cast<const char*>(data), size});
    TFlightImport import = ReadFlightCsv(file);
    for (auto& spray : import.Sprays) {
        spray->CalculateGeoExtents();
        spray->ComputeAllSprayStats();
    }
    return 0;
}
