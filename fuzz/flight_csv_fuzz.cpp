// Flight-data CSV files: the input is one file. Every run read has its spray statistics
// computed, as the spray exports do.

#include "fuzz_support.h"
#include "gis/flight/flight_csv.h"
#include "platform/text_file.h"

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
