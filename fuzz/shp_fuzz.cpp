// Shapefiles: the input packs the main file, the index and the attribute table (in that
// order) as tl_fuzz::PackInput does; they are written side by side and the main file loaded.
// An input whose last byte is odd is loaded in the complete profile, with the seeds' table
// columns chosen (ID as id and value, NAME as name), and what loads is written back as
// boundaries, lines and points and read again.

#include <tl_gis/gis/shp/gis_file_shp.h>
#include <tl_gis/hostmap/map_layer.h>
#include "fuzz_support.h"

namespace {
// The complete profile and its columns for one input, the defaults back afterwards.
struct TProfile {
    explicit TProfile(bool complete) {
        TGisFile::s_bCompleteProfile = complete;
        TGisFile::s_strIdField = TGisFile::s_strValueField = complete ? "ID" : "";
        TGisFile::s_strNameField = complete ? "NAME" : "";
    }
    ~TProfile() {
        TGisFile::s_bCompleteProfile = false;
        TGisFile::s_strIdField = TGisFile::s_strValueField = TGisFile::s_strNameField = "";
    }
};
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    tl_fuzz::PrepareInput(size);
    const bool complete = size > 0 && (data[size - 1] & 1) != 0;
    const TProfile profile(complete);
    const auto files = tl_fuzz::SplitInput(data, size, 3);
    const std::string path = tl_fuzz::WriteScratchFile("input.shp", files[0]);
    tl_fuzz::WriteScratchFile("input.shx", files[1]);
    tl_fuzz::WriteScratchFile("input.dbf", files[2]);
    TMapLayer layer;
    TGisFileShp reader;
    reader.LoadFile(path.c_str(), &layer, nullptr);
    if (!complete || layer.GetElementCount() == 0) return 0;
    TGisFileShp writer;
    writer.m_iWriteMode = 0;
    if (writer.WriteFile((tl_fuzz::ScratchFolder() + "/copy.shp").c_str(), &layer) != GISFILE_OK) return 0;
    for (const char* written : {"/copy_Spray_Polys.shp", "/copy_Lines.shp", "/copy_Points.shp"}) {
        TMapLayer back;
        TGisFileShp().LoadFile((tl_fuzz::ScratchFolder() + written).c_str(), &back, nullptr);
    }
    return 0;
}
