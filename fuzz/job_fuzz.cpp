// JOB files: the input is one job file. What loads is written back as a job file and read
// again, as a job-to-job conversion would; the writer takes the job number from the name, and
// the default header version wants 1 to 999.

#include <tl_gis/gis/job/gis_file_job.h>
#include "round_trip.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    return tl_fuzz::LoadWriteReload<TGisFileJob>(data, size, "input.job", "12.job");
}
