#include "gis/midmif/mif_complete_reader.h"

#include <algorithm>

#include <tl_gis/gis/coordinates.h>
#include <tl_gis/gis/line_assembly.h>
#include <tl_gis/platform/numbers.h>
#include "gis/coordinate_transform.h"
#include "gis/load_recording.h"
#include "gis/midmif/mif_object_names.h"
#include "gis/midmif/mif_scan.h"
#include "gis/point_assembly.h"
#include "gis/polygon_groups.h"

namespace {
struct TObjectWord {
    std::string_view name;
    TMifObjectKind eKind;
};

constexpr TObjectWord kCarriedObjects[] = {
    {"POINT", OBJECT_POINT},           {"LINE", OBJECT_LINE},
    {"PLINE", OBJECT_PLINE},           {"REGION", OBJECT_REGION},
    {"MULTIPOINT", OBJECT_MULTIPOINT}, {"COLLECTION", OBJECT_COLLECTION},
};

TMifObjectKind CarriedObjectKind(std::string_view word) {
    for (const TObjectWord& object : kCarriedObjects)
        if (EqualsNoCase(word, object.name)) return object.eKind;
    return OBJECT_NONE;
}

// The header's value of a clause such as Charset "WindowsLatin1": the text in quotes, or the
// first word when there are none.
std::string_view QuotedValue(std::string_view text) {
    const std::size_t open = text.find('"');
    if (open == std::string_view::npos) return FirstWord(text);
    const std::size_t close = text.find('"', open + 1);
    return text.substr(open + 1, close == std::string_view::npos ? std::string_view::npos : close - open - 1);
}

// A point line takes at least four bytes ("1 2" and its line end), so no more points than that
// are reserved for a count the rest of the file cannot hold.
constexpr std::int64_t kLeastPointBytes = 4;

bool HasContent(const std::vector<std::string>& fields, int index) {
    if (index < 0 || static_cast<std::size_t>(index) >= fields.size()) return false;
    return fields[static_cast<std::size_t>(index)].find_first_not_of(" \t") != std::string::npos;
}
}  // namespace

TMifCompleteReader::TMifCompleteReader(TMapLayer* layer, TLoadReport* report, std::string mifPath,
                                       const TTextFile& mifFile)
    : m_pLayer(layer),
      m_pReport(report),
      m_strMifPath(std::move(mifPath)),
      m_MifFile(mifFile),
      m_lMifLength(mifFile.GetLength()) {}

int TMifCompleteReader::ProcessLine(std::string_view line, long long number) {
    line = MifLineText(line);
    if (line.empty()) return 0;
    if (!m_bInData) {
        ProcessHeaderLine(line, number);
        if (!m_bInData) return 0;
        // An object before any DATA line begins the data of the file.
        if (!EqualsNoCase(FirstWord(line), "DATA")) return ProcessObjectLine(line, number);
        return 0;
    }
    // Point lines, the bulk of a file, start with a digit or a sign.
    if (IsAsciiLetter(line[0])) return ProcessObjectLine(line, number);
    return ProcessPlainLine(line, number);
}

void TMifCompleteReader::ProcessHeaderLine(std::string_view line, long long number) {
    const std::string_view word = FirstWord(line);
    const std::string_view rest = AfterFirstWord(line);
    // A column definition has a type after its name; the DATA line has nothing after it.
    if (m_iColumnsLeft > 0 && !(EqualsNoCase(word, "DATA") && rest.empty())) {
        --m_iColumnsLeft;
        m_Columns.push_back(ToUtf8(QuotedValue(word), m_eEncoding));
        return;
    }
    if (EqualsNoCase(word, "COLUMNS")) {
        m_iColumnsLeft = std::max(0, ParseInt(rest));
        m_Columns.clear();
    } else if (EqualsNoCase(word, "CHARSET")) {
        // A set the library does not know (MapInfo's "Neutral", say) is read as UTF-8, each byte
        // that is not as Windows Latin 1.
        if (!EncodingFromName(QuotedValue(rest), m_eEncoding)) m_eEncoding = ENCODING_UTF8;
    } else if (EqualsNoCase(word, "DELIMITER")) {
        const std::string_view delimiter = QuotedValue(rest);
        if (!delimiter.empty()) m_cDelimiter = delimiter[0];
    } else if (EqualsNoCase(word, "DATA") || CarriedObjectKind(word) != OBJECT_NONE ||
               FindObjectCause(kMifUncarriedObjects, word) != nullptr) {
        StartData(number);
    }
}

void TMifCompleteReader::StartData(long long number) {
    m_bInData = true;
    m_Chosen = FindChosenColumns(m_Columns);
    for (const std::string& missing : m_Chosen.Missing)
        if (m_pReport != nullptr && m_pReport->Skip(LOAD_MIF_COLUMN_NOT_FOUND, number))
            m_pReport->SetFirstNote(LOAD_MIF_COLUMN_NOT_FOUND, TLoadReport::EscapeText(missing));
    for (std::size_t i = 0; i < m_Columns.size() && m_iBoundColumn < 0; ++i)
        if (EqualsNoCase(m_Columns[i], COMPLETE_COLUMN_BOUND)) m_iBoundColumn = static_cast<int>(i);
    m_bReadRows = m_Chosen.iId >= 0 || m_Chosen.iValue >= 0 || m_Chosen.iName >= 0 || m_iBoundColumn >= 0;
    if (m_bReadRows) m_Mid.Open(m_strMifPath);
}

int TMifCompleteReader::ProcessObjectLine(std::string_view line, long long number) {
    const std::string_view word = FirstWord(line);
    if (EqualsNoCase(word, "DATA")) {
        // As in the default reading, a DATA line starts the numbering again.
        SaveObject();
        m_iLineNumber = 0;
        m_iPointNumber = 0;
        return 0;
    }
    if (const TMifObjectKind kind = CarriedObjectKind(word); kind != OBJECT_NONE) {
        SaveObject();
        BeginObject(kind, AfterFirstWord(line), number);
        // A point also gives the layer the centroid the default reading adds.
        if (kind == OBJECT_POINT && m_pLayer != nullptr) {
            tagLOC at = PointKeywordLocation(line);
            if (MapCoordinatePair(at.dLat, at.dLon)) m_pLayer->AddCentroid(at);
        }
    } else if (const TMifObjectCause* object = FindObjectCause(kMifUncarriedObjects, word)) {
        SaveObject();
        m_lObjectLine = number;
        m_iCollectionPartsLeft = 0;
        ReadRow(number);
        Count(object->eCause, number);
    }
    // Anything else is a clause of the object (Pen, Brush, Symbol, Center, Smooth, Font...).
    return 0;
}

void TMifCompleteReader::BeginObject(TMifObjectKind kind, std::string_view rest, long long number) {
    m_lObjectLine = number;
    // The parts of a collection share its row.
    const bool part = m_iCollectionPartsLeft > 0 &&
                      (kind == OBJECT_REGION || kind == OBJECT_PLINE || kind == OBJECT_MULTIPOINT);
    if (part) {
        --m_iCollectionPartsLeft;
    } else {
        m_iCollectionPartsLeft = 0;
        ReadRow(number);
    }
    m_eKind = kind;
    m_iSectionsLeft = 1;
    bool ok = false;
    switch (kind) {
        case OBJECT_POINT: {
            double x = 0.0, y = 0.0;
            if (!ScanTwoDoubles(rest, x, y)) return PassOverObject();
            AddPoint(tagLOC{y, x}, number);
            m_eKind = OBJECT_NONE;
            return;
        }
        case OBJECT_LINE: {
            std::size_t pos = 0;
            double x1 = 0.0, y1 = 0.0, x2 = 0.0, y2 = 0.0;
            if (!(ScanDouble(rest, pos, x1) && ScanDouble(rest, pos, y1) && ScanDouble(rest, pos, x2) &&
                  ScanDouble(rest, pos, y2)))
                return PassOverObject();
            m_Points.clear();
            for (tagLOC end : {tagLOC{y1, x1}, tagLOC{y2, x2}}) {
                MapCoordinatePair(end.dLat, end.dLon);
                if (ClassifyCoordinate(end.dLat, end.dLon) == COORD_GEOGRAPHIC)
                    m_Points.push_back(end);
                else
                    Count(RefusedCoordinateCause(end.dLat, end.dLon, false), number);
            }
            AddLine(BOUNDARY_OPEN);
            m_eKind = OBJECT_NONE;
            return;
        }
        case OBJECT_PLINE:
            if (StartsWithNoCase(rest, "MULTIPLE")) {
                // PLINE MULTIPLE n: n sections, each a count line and its points.
                m_iSectionsLeft = ParseInt(AfterFirstWord(rest), &ok);
                if (!ok || m_iSectionsLeft < 1) return PassOverObject();
                m_eExpected = EXPECT_COUNT;
                return;
            }
            [[fallthrough]];
        case OBJECT_MULTIPOINT: {
            // The count stands on the keyword's line, or on the next one.
            const int count = ParseInt(rest, &ok);
            if (ok)
                StartSection(count);
            else
                m_eExpected = EXPECT_COUNT;
            return;
        }
        case OBJECT_REGION:
            m_RegionRings.clear();
            m_iSectionsLeft = ParseInt(rest, &ok);
            if (!ok || m_iSectionsLeft < 1) return PassOverObject();
            m_eExpected = EXPECT_COUNT;
            return;
        case OBJECT_COLLECTION:
            m_iCollectionPartsLeft = std::max(0, ParseInt(rest));
            m_eKind = OBJECT_NONE;
            return;
        case OBJECT_NONE:
            return;
    }
}

int TMifCompleteReader::ProcessPlainLine(std::string_view line, long long number) {
    if (m_eExpected == EXPECT_COUNT) {
        bool ok = false;
        const int count = ParseInt(line, &ok);
        if (!ok) {
            PassOverObject();
            return 0;
        }
        StartSection(count);
        return 0;
    }
    if (m_eExpected != EXPECT_POINTS) return 0;
    double x = 0.0, y = 0.0;
    // A line without two numbers (a styling clause that starts with a digit) is not a point.
    if (!ScanTwoDoubles(line, x, y)) return 0;
    ++m_iPointsSeen;
    if (!MapCoordinatePair(y, x)) {
        Count(LOAD_COORD_UNMAPPED, number);
        if (m_iPointsSeen >= m_iPointsExpected) EndSection();
        return 0;
    }
    switch (ClassifyCoordinate(y, x)) {
        case COORD_GEOGRAPHIC:
            m_Points.push_back(tagLOC{y, x});
            break;
        case COORD_PROJECTED: {
            // Either answer ends the reading, as it does by default; the object keeps the points
            // before it.
            m_StopPoint = tagLOC{y, x};
            m_bStopped = true;
            return PromptProjectedCoordinate(DescribeSourceForPrompt(" MID/MIF ").c_str(), y, x);
        }
        default:
            // A point out of the degree range is dropped and the object goes on without it.
            Count(LOAD_VERTEX_OUT_OF_RANGE, number);
            break;
    }
    if (m_iPointsSeen >= m_iPointsExpected) EndSection();
    return 0;
}

void TMifCompleteReader::StartSection(int count) {
    if (count < 1) return PassOverObject();
    m_iPointsExpected = count;
    m_iPointsSeen = 0;
    m_Points.clear();
    const std::int64_t bytesLeft = m_lMifLength - m_MifFile.GetPosition();
    const std::int64_t room = std::max<std::int64_t>(bytesLeft, 0) / kLeastPointBytes + 1;
    m_Points.reserve(static_cast<std::size_t>(std::min<std::int64_t>(count, room)));
    m_eExpected = EXPECT_POINTS;
}

void TMifCompleteReader::EndSection() {
    switch (m_eKind) {
        case OBJECT_PLINE:
            AddLine(BOUNDARY_OPEN);
            break;
        case OBJECT_REGION:
            AddRing();
            break;
        case OBJECT_MULTIPOINT:
            for (const tagLOC& point : m_Points) AddPoint(point, m_lObjectLine);
            break;
        default:
            break;
    }
    m_Points.clear();
    if (--m_iSectionsLeft > 0) {
        m_eExpected = EXPECT_COUNT;
    } else {
        m_eExpected = EXPECT_NOTHING;
        m_eKind = OBJECT_NONE;
    }
}

void TMifCompleteReader::SaveObject() {
    if (m_eKind != OBJECT_NONE && m_eExpected != EXPECT_NOTHING) {
        if (!m_bStopped) Count(LOAD_MIF_SHORT_OBJECT, m_lObjectLine);
        // A section cut short keeps the points it has; the sections it never reached are lost.
        if (m_eExpected == EXPECT_POINTS && !m_Points.empty()) {
            m_iSectionsLeft = 1;
            EndSection();
        }
    }
    m_eKind = OBJECT_NONE;
    m_eExpected = EXPECT_NOTHING;
}

void TMifCompleteReader::PassOverObject() {
    Count(LOAD_MIF_DAMAGED_OBJECT, m_lObjectLine);
    m_eKind = OBJECT_NONE;
    m_eExpected = EXPECT_NOTHING;
}

void TMifCompleteReader::ReadRow(long long number) {
    m_Row = TChosenValues{};
    m_iRowBound = 0;
    if (!m_bReadRows) return;
    bool wellFormed = true;
    if (!m_Mid.ReadRow(m_cDelimiter, wellFormed)) {
        if (m_pReport != nullptr && m_pReport->Skip(LOAD_MIF_NO_MID_ROW, number))
            m_pReport->SetFirstNote(LOAD_MIF_NO_MID_ROW,
                                    m_Mid.IsOpen() ? "the .mid has ended" : "no .mid file");
        return;
    }
    const std::vector<std::string>& fields = m_Mid.Fields();
    if ((!wellFormed || fields.size() != m_Columns.size()) && m_pReport != nullptr &&
        m_pReport->Skip(LOAD_MIF_MID_FIELD_COUNT, number)) {
        std::string note = "row ";
        AppendInt(note, m_Mid.RowNumber());
        note += wellFormed ? ": " : ": an unclosed quote, ";
        AppendInt(note, static_cast<long long>(fields.size()));
        note += " fields for ";
        AppendInt(note, static_cast<long long>(m_Columns.size()));
        note += " columns";
        m_pReport->SetFirstNote(LOAD_MIF_MID_FIELD_COUNT, note);
    }
    m_Row = ReadChosenValues(m_Chosen, fields);
    if (m_Row.bHasId) m_Row.strId = ToUtf8(m_Row.strId, m_eEncoding);
    if (m_Row.bHasName) m_Row.strName = ToUtf8(m_Row.strName, m_eEncoding);
    if (!m_Row.bHasValue && HasContent(fields, m_Chosen.iValue)) Count(LOAD_MIF_VALUE_NOT_NUMBER, number);
    if (m_iBoundColumn >= 0 && static_cast<std::size_t>(m_iBoundColumn) < fields.size())
        m_iRowBound = BoundTypeFromName(fields[static_cast<std::size_t>(m_iBoundColumn)]);
}

void TMifCompleteReader::AddLine(int boundType) {
    // A line whose every point was dropped adds nothing.
    if (m_Points.empty() || m_pLayer == nullptr) return;
    ++m_iLineNumber;
    std::string number;
    if (!m_Row.bHasId || m_Row.strId.empty()) AppendInt(number, m_iLineNumber);
    const std::string& id = number.empty() ? m_Row.strId : number;
    // The line takes its value from the layer, which holds the row's value while it is added.
    const double layerValue = m_pLayer->m_dValue;
    if (m_Row.bHasValue) m_pLayer->m_dValue = m_Row.dValue;
    TFeatureLine* line = AddImportedLine(m_pLayer, static_cast<int>(ELEMENT_LINE_BOUNDARY), boundType,
                                         static_cast<int>(m_Points.size()), m_Points.data(), id.c_str(),
                                         false, COLOR_NONE, false, false, false);
    m_pLayer->m_dValue = layerValue;
    NoteAdded(m_pReport, line);
    if (line != nullptr && m_eKind == OBJECT_REGION) m_RegionRings.push_back(line);
}

void TMifCompleteReader::AddRing() {
    // A ring inside an odd number of the region's earlier rings is a hole (an island in a hole
    // lies inside two); the others take the row's bound type when it names one.
    int containing = 0;
    const int count = static_cast<int>(m_Points.size());
    for (const TFeatureLine* earlier : m_RegionRings)
        containing += IsRingInsideRing(m_Points.data(), count, earlier->m_pPoints, earlier->m_iNumPoints);
    const bool hole = containing % 2 == 1;
    AddLine(hole ? BOUNDARY_EXC : m_iRowBound == BOUNDARY_EXC ? BOUNDARY_EXC : BOUNDARY_INC);
}

void TMifCompleteReader::AddPoint(tagLOC loc, long long number) {
    if (m_pLayer == nullptr) return;
    MapCoordinatePair(loc.dLat, loc.dLon);
    if (ClassifyCoordinate(loc.dLat, loc.dLon) != COORD_GEOGRAPHIC) {
        Count(RefusedCoordinateCause(loc.dLat, loc.dLon, false), number);
        return;
    }
    ++m_iPointNumber;
    std::string id;
    if (m_Row.bHasId && !m_Row.strId.empty()) {
        id = m_Row.strId;
    } else {
        id = "Point ";
        AppendInt(id, m_iPointNumber);
    }
    const double value = m_Row.bHasValue ? m_Row.dValue : m_pLayer->m_dValue;
    NoteAdded(m_pReport, AddImportedPoint(m_pLayer, loc, id, m_Row.bHasName ? m_Row.strName : "", value));
}

void TMifCompleteReader::Finish() {
    SaveObject();
    // Rows after a stop belong to objects that were not read.
    if (!m_Mid.IsOpen() || m_bStopped) return;
    const long long next = m_Mid.RowNumber() + 1;
    if (const long long rows = m_Mid.CountRemainingRows(); rows > 0 && m_pReport != nullptr) {
        m_pReport->Skip(LOAD_MIF_MID_EXTRA_ROW, m_lObjectLine, rows);
        std::string note = "from row ";
        AppendInt(note, next);
        note += " of the .mid";
        m_pReport->SetFirstNote(LOAD_MIF_MID_EXTRA_ROW, note);
    }
}
