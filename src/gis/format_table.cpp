#include "gis/format_table.h"

#include <iterator>
#include <new>

#include <tl_gis/gis/dxf/gis_file_dxf.h>
#include <tl_gis/gis/job/gis_file_job.h>
#include <tl_gis/gis/midmif/gis_file_midmif.h>
#include <tl_gis/gis/pmh/gis_file_pmh.h>
#include <tl_gis/gis/shp/gis_file_shp.h>

namespace {
template <class T>
TGisFile* CreateFormat() {
    return new (std::nothrow) T;
}

// A shapefile export writes the boundaries instead of the recorded spray when the host asks.
void PrepareShpWriter(TGisFile& writer, const TGisMap& map) {
    static_cast<TGisFileShp&>(writer).m_iWriteMode = map.m_bWriteBoundaries ? 0 : 1;
}

// Adding a format: include its header and fill in its row.
const TGisFormat kFormats[] = {
    {GIS_FILE_JOB, "JOB", "JOB", &CreateFormat<TGisFileJob>, &CreateFormat<TGisFileJob>, nullptr},
    {GIS_FILE_PMH, "PMH", "PMH", &CreateFormat<TGisFilePmh>, &CreateFormat<TGisFilePmh>, nullptr},
    {GIS_FILE_DXF, "DXF", "DXF", &CreateFormat<TGisFileDxf>, &CreateFormat<TGisFileDxf>, nullptr},
    {GIS_FILE_MIDMIF, "MIF", "MID/MIF", &CreateFormat<TGisFileMidMif>, &CreateFormat<TGisFileMidMif>,
     nullptr},
    {GIS_FILE_SHP, "SHP", "SHP", &CreateFormat<TGisFileShp>, &CreateFormat<TGisFileShp>, &PrepareShpWriter},
};
}  // namespace

const TGisFormat* FindGisFormat(int type) {
    for (const TGisFormat& f : kFormats)
        if (f.eType == type) return &f;
    return nullptr;
}

const TGisFormat* GisFormatsBegin() {
    return std::begin(kFormats);
}
const TGisFormat* GisFormatsEnd() {
    return std::end(kFormats);
}
