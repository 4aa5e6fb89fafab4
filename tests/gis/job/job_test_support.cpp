#include "job_test_support.h"

#include <cmath>
#include <filesystem>
#include <random>

#include "gis/line_assembly.h"

namespace {
const int kIds[] = {1010, 1011, 2039, 2040, 2041, 3080, 3081, 3082, 3083, 3084, 3085,  3086,  3087,  3088,
                    3089, 3090, 3096, 5054, 5090, 5173, 5185, 5186, 5187, 5188, 12002, 17001, 17002, 17008};

std::string WordFor(int id) {
    switch (id) {
        case 5173:
            return "W5173 lines %d vertices %d";
        case 17001:
            return "W17001 %s";
        case 3080:
            return "W3080 %s";
        default:
            return "W" + std::to_string(id);
    }
}
}  // namespace

TTestLanguage::TTestLanguage() : m_strPrevious(TLanguageTable::GetConfigFolder()) {
    WriteFileBytes(m_dir.File("Orvanta.ini"), "[General]\nLanguage=ENGLISH\n");
    std::string lang = "[Texts]\n";
    for (int id : kIds) lang += std::to_string(id) + "\t" + WordFor(id) + "\n";
    WriteFileBytes(m_dir.File("lang_english.ini"), lang);
    TLanguageTable::SetConfigFolder(m_dir.Path());
    GetTlGisApp().InitInstance();
}

TTestLanguage::~TTestLanguage() {
    TLanguageTable::SetConfigFolder(m_strPrevious);
    TScopedMessageHandler quiet([](const TMessageBoxRequest&) { return static_cast<int>(IDOK); });
    GetTlGisApp().InitInstance();
}

TJobSettings::TJobSettings(int format, int option, double toleranceM) {
    TGisFile::s_iGisFileFormat = format;
    TGisFile::s_iCompatible = option;
    TGisFile::s_dDecimationLimitM = toleranceM;
}

TJobSettings::~TJobSettings() {
    TGisFile::s_iGisFileFormat = GISFILE_JOB_V1;
    TGisFile::s_iCompatible = REDUCE_BY_TOLERANCE;
    TGisFile::s_dDecimationLimitM = 0.0;
}

TFeatureLine* AddLine(TMapLayer& layer, std::uint32_t kind, int boundType,
                      const std::vector<tagLOC>& vertices, const std::string& id) {
    return AddImportedLine(&layer, static_cast<int>(kind), boundType, static_cast<int>(vertices.size()),
                           vertices.data(), id.c_str(), false, COLOR_NONE, false, false, false);
}

TFeatureMarker* AddMarker(TMapLayer& layer, const std::string& id, const std::string& name, int symbol,
                          tagLOC loc) {
    auto* marker = new TFeatureMarker;
    marker->m_strId = id;
    marker->m_strName = name;
    marker->SetLowBits(symbol);
    marker->m_Loc = loc;
    marker->CalculateGeoExtents();
    layer.AddElement(marker, ADD_ELEMENT_OWNED);
    return marker;
}

TFeaturePattern* AddPattern(TMapLayer& layer, const std::string& id, int kind,
                            std::initializer_list<std::pair<char, tagLOC>> points) {
    auto* pattern = new TFeaturePattern;
    pattern->m_strId = id;
    pattern->m_iKind = kind;
    for (const auto& [letter, loc] : points) pattern->m_aPoint[letter - 'A'].m_Loc = loc;
    pattern->CalculateGeoExtents();
    layer.AddElement(pattern, ADD_ELEMENT_OWNED);
    return pattern;
}

std::vector<tagLOC> CircleRing(double lat, double lon, double radiusM, int n) {
    std::vector<tagLOC> ring;
    const double dLat = radiusM / 111320.0;
    const double dLon = dLat / std::cos(lat * M_PI / 180.0);
    for (int i = 0; i < n; ++i) {
        const double a = 2.0 * M_PI * i / n;
        ring.push_back({lat + dLat * std::sin(a), lon + dLon * std::cos(a)});
    }
    return ring;
}

std::vector<tagLOC> WavyLine(double lat, double lon, int n, double amplitudeM, unsigned seed) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> jitter(-1.0, 1.0);
    std::vector<tagLOC> line;
    line.reserve(static_cast<std::size_t>(n));
    const double stepLon = 2.0 / 111320.0;  // about 1.4 m at mid latitudes
    for (int i = 0; i < n; ++i) {
        const double wave = amplitudeM * std::sin(i * 0.05) + 0.3 * amplitudeM * jitter(random);
        line.push_back({lat + wave / 111320.0, lon + stepLon * i});
    }
    return line;
}

int LoadJobText(const std::string& text, TMapLayer& layer, TGisFileJob* job) {
    TTempDir dir;
    const std::string path = dir.File("input.job");
    WriteFileBytes(path, text);
    TGisFileJob local;
    return (job != nullptr ? job : &local)->LoadFile(path.c_str(), &layer, nullptr);
}

int WriteJob(const std::string& fileName, TMapLayer& layer, std::string& bytes, bool* created) {
    TTempDir dir;
    const std::string path = dir.File(fileName);
    TGisFileJob job;
    const int result = job.WriteFile(path.c_str(), &layer);
    const bool exists = std::filesystem::exists(path);
    if (created != nullptr) *created = exists;
    bytes = exists ? ReadFileBytes(path) : std::string();
    return result;
}
