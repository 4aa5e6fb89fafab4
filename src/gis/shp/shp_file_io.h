#pragma once
// The files and codec state a shapefile load or export works with, kept out of the public class
// so that hosts see none of the record code.

#include <memory>

#include "gis/shp/dbf_table.h"
#include "gis/shp/shp_codec.h"
#include "gis/shp/shp_record_reader.h"
#include "gis/shp/shp_record_writer.h"
#include "platform/byte_file.h"

struct TShpFileIo {
    // Writing.
    TShpOutputFiles m_Out;
    TDbfRecordWriter m_DbfRecord;
    // Reading.
    TByteFile m_ShapeFile;
    std::unique_ptr<TShpRecordReader> m_pReader;
    TShpHeader m_Header;
};
