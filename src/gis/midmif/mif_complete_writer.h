#pragma once
// The complete profile's writing of a layer as a MapInfo pair: open lines as PLINE objects,
// points and markers as POINT objects, each inclusion ring with the exclusion rings inside it
// as one REGION, rings as they are held (no closing vertex added), and one .mid row for every
// object with the columns ID, BOUND, VALUE and NAME after the system's eight.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include <tl_gis/hostmap/map_layer.h>
#include <tl_gis/platform/text_file.h>
#include "gis/polygon_groups.h"
#include "platform/text_encoding.h"

class TMifCompleteWriter {
public:
    TMifCompleteWriter(TTextFile& mif, TTextFile& mid, char delimiter)
        : m_Mif(mif), m_Mid(mid), m_cDelimiter(delimiter) {}

    // Looks through the layer once: the charset its texts need (Windows Latin 1 when every text
    // fits it, otherwise UTF-8 under MapInfo's "Neutral", which GDAL passes on unchanged), the
    // widths of the ID and NAME columns, and its rings grouped into polygons with their holes.
    void Plan(const TMapLayer& layer);
    void WriteHeader();
    // Writes a line, marker or point and its row; false for an element of another kind.
    bool WriteElement(const TMapElement& element);

private:
    void WriteLine(const TFeatureLine& line);
    void WriteRegion(const TPolygonGroup& group);
    void WriteOpenLine(const TFeatureLine& line);
    // A row: the system's first and last fields (the rest of the eight empty), then ID, BOUND,
    // VALUE and NAME.
    void WriteRow(std::string_view first, std::string_view last, std::string_view id, int boundType,
                  double value, std::string_view name);
    // A text field in the file's charset, in quotes.
    void AppendText(std::string& row, std::string_view text) const;

    TTextFile& m_Mif;
    TTextFile& m_Mid;
    char m_cDelimiter;
    TTextEncoding m_eEncoding = ENCODING_WINDOWS_1252;
    std::size_t m_nIdWidth = 1;
    std::size_t m_nNameWidth = 1;

    // The rings' polygons: first one group per ring that is no exclusion ring, in the layer's
    // order, then one per exclusion ring that lies inside none of them.
    bool m_bGrouped = false;  // the layer has exclusion rings, so the rings were grouped
    std::vector<TPolygonGroup> m_Groups;
    std::size_t m_nNextOuter = 0;  // the group of the next ring that is no exclusion ring
    std::size_t m_nNextAlone = 0;  // the group of the next exclusion ring that is no hole

    std::string m_strOut;
    std::string m_strRow;
};
