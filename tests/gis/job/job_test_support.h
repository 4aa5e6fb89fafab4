#pragma once
// Helpers of the JOB tests: a language file whose text for id N is "W<N>", the writer's settings
// for one test, layers built in memory, and files written and read in a scratch folder.

#include <filesystem>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include <tl_gis/features/feature_pattern.h>
#include <tl_gis/gis/job/gis_file_job.h>
#include <tl_gis/gis/line_assembly.h>
#include "../config_folder_guard.h"
#include "layer_builders.h"

using layer_test::AddMarker;

class TTestLanguage {
public:
    TTestLanguage() {
        WriteFileBytes(m_dir.File("Orvanta.ini"), "[General]\nLanguage=ENGLISH\n");
        std::string lang = "[Texts]\n";
        for (int id :
             {1010, 1011, 2039, 2040, 2041, 3080, 3081, 3082, 3083, 3084, 3085,  3086,  3087,  3088,
              3089, 3090, 3096, 5054, 5090, 5173, 5185, 5186, 5187, 5188, 12002, 17001, 17002, 17008})
            lang += std::to_string(id) + "\tW" + std::to_string(id) +
                    (id == 5173                  ? " lines %d vertices %d\n"
                     : id == 3080 || id == 17001 ? " %s\n"
                                                 : "\n");
        WriteFileBytes(m_dir.File("lang_english.ini"), lang);
        GetTlGisApp().InitInstance();
    }

private:
    TTempDir m_dir;
    TConfigFolderGuard m_guard{m_dir.Path()};
};

// The writer's format and reduction option for one test; the defaults come back afterwards.
struct TJobSettings {
    TJobSettings(int format, int option) { Set(format, option); }
    ~TJobSettings() { Set(GISFILE_JOB_V1, REDUCE_BY_TOLERANCE); }
    static void Set(int format, int option) {
        std::tie(TGisFile::s_iGisFileFormat, TGisFile::s_iCompatible) = std::tuple{format, option};
    }
};

inline TFeatureLine* AddLine(TMapLayer& layer, std::uint32_t kind, int boundType,
                             const std::vector<tagLOC>& vertices, const std::string& id = "") {
    return AddImportedLine(&layer, static_cast<int>(kind), boundType, static_cast<int>(vertices.size()),
                           vertices.data(), id.c_str(), false, COLOR_NONE, false, false, false);
}

// A pattern with the given points (letter, position); the others stay at (0, 0).
inline TFeaturePattern* AddPattern(TMapLayer& layer, const std::string& id, int kind,
                                   std::initializer_list<std::pair<char, tagLOC>> points) {
    auto* pattern = new TFeaturePattern;
    pattern->m_strId = id;
    pattern->m_iKind = kind;
    for (const auto& [letter, loc] : points) pattern->m_aPoint[letter - 'A'].m_Loc = loc;
    layer.AddElement(pattern, ADD_ELEMENT_OWNED);
    return pattern;
}

// A wandering line of n vertices heading east from (45, -93), steps of about a metre.
inline std::vector<tagLOC> RandomWalk(int n, unsigned seed) {
    std::mt19937 random(seed);
    std::normal_distribution<double> step(0.0, 1e-5);
    std::vector<tagLOC> points(static_cast<std::size_t>(n));
    tagLOC at{45.0, -93.0};
    for (tagLOC& p : points) p = at = {at.dLat + step(random), at.dLon + step(random) + 0.5e-5};
    return points;
}

inline int LoadJobText(const std::string& text, TMapLayer& layer, TGisFileJob* job = nullptr) {
    TTempDir dir;
    WriteFileBytes(dir.File("input.job"), text);
    TGisFileJob local;
    return (job != nullptr ? job : &local)->LoadFile(dir.File("input.job").c_str(), &layer, nullptr);
}

// Writes the layer as fileName in a scratch folder; bytes is empty when no file was made.
inline int WriteJob(const std::string& fileName, TMapLayer& layer, std::string& bytes,
                    TGisFileJob* job = nullptr) {
    TTempDir dir;
    TGisFileJob local;
    const int result = (job != nullptr ? job : &local)->WriteFile(dir.File(fileName).c_str(), &layer);
    bytes = std::filesystem::exists(dir.File(fileName)) ? ReadFileBytes(dir.File(fileName)) : std::string();
    return result;
}
