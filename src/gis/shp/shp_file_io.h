#pragma once
// The files and codec state a shapefile load or export works with, kept out of the public class
// so that hosts see none of the record code.

#include <cstddef>
#include <memory>
#include <vector>

#include "gis/polygon_groups.h"
#include "gis/shp/dbf_complete_table.h"
#include "gis/shp/dbf_table.h"
#include "gis/shp/shp_attribute_rows.h"
#include "gis/shp/shp_codec.h"
#include "gis/shp/shp_record_reader.h"
#include "gis/shp/shp_record_writer.h"
#include "platform/byte_file.h"

class TBuffer;

// The block a record of the given size is encoded in, taken from the buffer with some room to
// spare; null when neither it nor memory is there.
unsigned char* ShpRecordBlock(TBuffer& buffer, std::size_t bytes);

// A marker or point of the complete profile's export: its position, and a marker's name.
struct TShpCompletePoint {
    const TMapElement* pElement = nullptr;
    tagLOC Loc;
    const std::string* pName = nullptr;
};

struct TShpFileIo {
    // Writing.
    TShpOutputFiles m_Out;
    TDbfRecordWriter m_DbfRecord;
    // The complete profile's boundary export: the layer's polygons, open lines, markers and
    // points, and the table of ID, BOUND, VALUE and NAME.
    std::vector<TPolygonGroup> m_Groups;
    std::vector<const TFeatureLine*> m_OpenLines;
    std::vector<TShpCompletePoint> m_Points;
    TDbfCompleteTable m_CompleteTable;
    // Reading.
    TByteFile m_ShapeFile;
    std::unique_ptr<TShpRecordReader> m_pReader;
    TShpHeader m_Header;
    std::unique_ptr<TShpAttributeRows> m_pAttributes;  // the complete profile's, when columns are chosen
};
