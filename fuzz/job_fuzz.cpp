// JOB files: the input is one job file. What loads is written back as a job file and read
// again, as a job-to-job conversion would.

#include "fuzz_support.h"
#include "gis/job/job_file.h"
#include "hostmap/map_layer.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    tl_fuzz::PrepareInput(size);
    const std::string path =
        tl_fuzz::WriteScratchFile("input.job", {reinterpret_cast<const char*>(data), size});
    TMapLayer layer;
    TGisFileJob reader;
    if (reader.LoadFile(path.c_str(), &layer, nullptr) != GISFILE_OK || layer.GetElementCount() == 0)
        return 0;

    // The writer takes the job number from the name; the default header version wants 1 to 999.
    const std::string copy = tl_fuzz::ScratchFolder() + "/12.job";
    TGisFileJob writer;
    if (writer.WriteFile(copy.c_str(), &layer) != GISFILE_OK) return 0;
    TMapLayer back;
    TGisFileJob{}.LoadFile(copy.c_str(), &back, nullptr);
    return 0;
}
