#pragma once
// The complete profile's reading of a MapInfo pair: every object of the .mif that the map model
// can carry (points, lines, every section of a polyline and every ring of a region), each with
// the .mid row that stands in the same place, for the columns the host chose.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <tl_gis/gis/load_report.h>
#include <tl_gis/hostmap/map_layer.h>
#include <tl_gis/platform/text_file.h>
#include "gis/attribute_columns.h"
#include "gis/midmif/mid_table.h"
#include "platform/text_encoding.h"

// The objects whose geometry the complete profile reads, and none.
enum TMifObjectKind {
    OBJECT_NONE,
    OBJECT_POINT,
    OBJECT_LINE,
    OBJECT_PLINE,
    OBJECT_REGION,
    OBJECT_MULTIPOINT,
    OBJECT_COLLECTION,
};

class TMifCompleteReader {
public:
    // report may be null; mifPath names the .mif, beside which the .mid is looked for, and
    // mifFile is the .mif open for reading, whose position tells how much of it is left.
    TMifCompleteReader(TMapLayer* layer, TLoadReport* report, std::string mifPath, const TTextFile& mifFile);

    // Handles one line, given its number. 0 lets the reading go on; anything else is the answer
    // to the projected-coordinate question, which ends it, and StopPoint() holds the point
    // asked about.
    int ProcessLine(std::string_view line, long long number);
    // Adds the object in progress and counts the .mid rows that no object took.
    void Finish();
    const tagLOC& StopPoint() const { return m_StopPoint; }

private:
    // What the next plain line of an open object is.
    enum TExpected { EXPECT_NOTHING, EXPECT_COUNT, EXPECT_POINTS };

    void ProcessHeaderLine(std::string_view line, long long number);
    void StartData(long long number);
    int ProcessObjectLine(std::string_view line, long long number);
    void BeginObject(TMifObjectKind kind, std::string_view rest, long long number);
    int ProcessPlainLine(std::string_view line, long long number);
    // Opens a section (a polyline part, a ring, a multipoint's list) of count points; room is
    // reserved for no more of them than the rest of the file can hold.
    void StartSection(int count);
    void EndSection();
    // Ends the open object, keeping the points of a section cut short.
    void SaveObject();
    void PassOverObject();

    // The row of the object beginning at the line, in m_Row and m_iRowBound.
    void ReadRow(long long number);
    void AddLine(int boundType);
    void AddRing();
    void AddPoint(tagLOC loc, long long number);
    void Count(TLoadCause cause, long long place, long long count = 1) {
        if (m_pReport != nullptr) m_pReport->Skip(cause, place, count);
    }

    TMapLayer* m_pLayer;
    TLoadReport* m_pReport;
    std::string m_strMifPath;
    const TTextFile& m_MifFile;
    std::int64_t m_lMifLength;

    // The header.
    bool m_bInData = false;
    int m_iColumnsLeft = 0;  // column definitions still to come after COLUMNS
    std::vector<std::string> m_Columns;
    char m_cDelimiter = '\t';  // MapInfo's default
    TTextEncoding m_eEncoding = ENCODING_UTF8;

    // The .mid rows.
    TMidTable m_Mid;
    bool m_bReadRows = false;  // a chosen column or BOUND is declared
    TChosenColumns m_Chosen;
    int m_iBoundColumn = -1;
    TChosenValues m_Row;
    int m_iRowBound = 0;  // the row's BOUND, 0 when it names none

    // The object in progress.
    TMifObjectKind m_eKind = OBJECT_NONE;
    TExpected m_eExpected = EXPECT_NOTHING;
    long long m_lObjectLine = 0;
    int m_iSectionsLeft = 0;
    int m_iPointsExpected = 0;
    int m_iPointsSeen = 0;
    std::vector<tagLOC> m_Points;
    std::vector<const TFeatureLine*> m_RegionRings;  // rings of the open region added so far
    int m_iCollectionPartsLeft = 0;

    // Numbers that name elements without an id column: lines as the default reader numbers
    // them, points apart.
    int m_iLineNumber = 0;
    int m_iPointNumber = 0;
    tagLOC m_StopPoint;
    bool m_bStopped = false;  // the projected-coordinate question ended the reading
};
