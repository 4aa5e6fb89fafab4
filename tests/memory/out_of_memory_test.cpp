// Memory that runs out at any allocation of a load or a write of a format class: nothing is
// thrown across the library's interface, the result is a result code (6003 where no other applies), and the
// layer is still whole: it can be measured, written and destroyed. The sanitizer build also shows that
// nothing is leaked on the way out.
//
// This program replaces the global allocation functions with ones that can be told to fail
// from the Nth allocation on; it is its own test program so that no other test runs with them.

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include <tl_gis/tl_gis.h>
#include "../gis/shp/shp_test_support.h"
#include "complete_profile.h"
#include "test_support.h"

// The replacements below pair malloc with free; GCC, seeing them inlined, takes that for a mix.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"
#endif

namespace {
long g_allocationsLeft = -1;  // -1: no limit
long g_allocationsMade = 0;

bool MayAllocate() {
    ++g_allocationsMade;
    if (g_allocationsLeft < 0) return true;
    if (g_allocationsLeft == 0) return false;
    --g_allocationsLeft;
    return true;
}

void* Allocate(std::size_t size) {
    return MayAllocate() ? std::malloc(size != 0 ? size : 1) : nullptr;
}
}  // namespace

void* operator new(std::size_t size) {
    if (void* p = Allocate(size)) return p;
    throw std::bad_alloc();
}
void* operator new[](std::size_t size) {
    return operator new(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size);
}
void operator delete(void* p) noexcept {
    std::free(p);
}
void operator delete[](void* p) noexcept {
    std::free(p);
}
void operator delete(void* p, std::size_t) noexcept {
    std::free(p);
}
void operator delete[](void* p, std::size_t) noexcept {
    std::free(p);
}

namespace {
using namespace shp_test;

// Runs the operation with allocations failing from the one numbered failAt (counted from 0),
// or without a limit for failAt -1; returns the result and how many allocations it asked for.
std::pair<int, long> RunLimited(const std::function<int()>& operation, long failAt) {
    g_allocationsMade = 0;
    g_allocationsLeft = failAt;
    int result = -12345;
    try {
        result = operation();
    } catch (...) {
        result = -99999;  // an exception crossed the interface
    }
    g_allocationsLeft = -1;
    return {result, g_allocationsMade};
}

// A layer with a boundary ring, a marker and a recorded spray run.
void FillLayer(TMapLayer& layer) {
    const tagLOC ring[] = {{45.5, -93.3}, {45.6, -93.3}, {45.6, -93.2}, {45.5, -93.2}};
    AddImportedLine(&layer, ELEMENT_LINE_BOUNDARY, BOUNDARY_INC, 4, ring, "1", true, COLOR_NONE, false, false,
                    false);
    auto* marker = new TFeatureMarker;
    marker->m_strName = "Gate";
    marker->m_strId = "1";
    marker->m_Loc = TLoc(45.55, -93.25);
    marker->CalculateGeoExtents();
    layer.AddElement(marker, ADD_ELEMENT_OWNED);
    AddSpray(layer, Straight(6, 30.0, 20.0, {0, 1, 1, 1, 1, 0}));
}

template <class TFormat>
std::unique_ptr<TGisFile> Make() {
    return std::make_unique<TFormat>();
}

struct TMemoryCase {
    const char* name;
    std::unique_ptr<TGisFile> (*pfnMake)();
    bool bWrite;  // writes FillLayer's layer to the file named; otherwise loads the path
    std::string strFile;
    bool bComplete = false;  // in the complete profile, with ID, VALUE and NAME chosen
};

TEST(OutOfMemory, EveryAllocationOfLoadsAndWrites) {
    EnsureLibraryStarted();
    TScriptedMessages quiet({ANSWER_NO, ANSWER_NO, ANSWER_NO, ANSWER_NO});
    const std::string data = TL_GIS_SOURCE_DIR "/tests/data/";
    TTempDir shapes;
    WriteFileBytes(shapes.File("mixed.shp"),
                   TShpBytes()
                       .Record(1, PointContent(-93.25, 45.5))
                       .Record(2, PolyContent(3, {0, 2}, {{-93.25, 45.5}, {-93.24, 45.5}, {-93.23, 45.5}}))
                       .Record(3, PolyContent(5, {0}, SquareRing(.01, true)))
                       .Bytes());
    TTempDir pair;
    WriteFileBytes(pair.File("c.mif"),
                   "Columns 3\n ID Char(5)\n VALUE Float\n NAME Char(5)\nData\n"
                   "Region 2\n 4\n0 40\n10 40\n10 50\n0 40\n 3\n2 42\n8 42\n5 48\n"
                   "Pline Multiple 2\n 2\n1 45\n2 46\n 2\n3 45\n4 46\nPoint 1 45\n");
    WriteFileBytes(pair.File("c.mid"), "\"f\",1,\"\"\n\"p\",2,\"\"\n\"g\",3,\"Gate\"\n");
    const TMemoryCase cases[] = {
        {"JOB load", &Make<TGisFileJob>, false, data + "job/v1_layer.job"},
        {"DXF load", &Make<TGisFileDxf>, false, data + "dxf/boundary_exclusion.dxf"},
        {"MIF load", &Make<TGisFileMidMif>, false, data + "midmif/polygons.mif"},
        {"PMH load", &Make<TGisFilePmh>, false, data + "pmh/three_rates.pmh"},
        {"SHP load", &Make<TGisFileShp>, false, shapes.File("mixed.shp")},
        {"JOB write", &Make<TGisFileJob>, true, "12.job"},
        {"DXF write", &Make<TGisFileDxf>, true, "f.dxf"},
        {"MIF write", &Make<TGisFileMidMif>, true, "f.mif"},
        {"MIF load, complete profile", &Make<TGisFileMidMif>, false, pair.File("c.mif"), true},
        {"MIF write, complete profile", &Make<TGisFileMidMif>, true, "c.mif", true},
        {"PMH write", &Make<TGisFilePmh>, true, "f.pmh"},
        {"SHP write", &Make<TGisFileShp>, true, "f.shp"},
    };
    for (const TMemoryCase& c : cases) {
        SCOPED_TRACE(c.name);
        const TCompleteProfile profile(c.bComplete);
        // Runs the case on a fresh layer in a fresh folder; the layer is then checked.
        const auto run = [&](long failAt,
                             const std::function<void(int, TMapLayer&, const TTempDir&)>& check) {
            TTempDir dir;
            TMapLayer layer;
            if (c.bWrite) FillLayer(layer);
            const std::string path = c.bWrite ? dir.File(c.strFile) : c.strFile;
            const std::unique_ptr<TGisFile> format = c.pfnMake();
            // The non-spray files go beside the recorded data file, here in the scratch folder.
            if (auto* shp = dynamic_cast<TGisFileShp*>(format.get()))
                shp->SetSourceFile(dir.File("flight.csv"));
            const auto [result, made] = RunLimited(
                [&] {
                    return c.bWrite ? format->WriteFile(path.c_str(), &layer)
                                    : format->LoadFile(path.c_str(), &layer, nullptr);
                },
                failAt);
            check(result, layer, dir);
            return made;
        };
        const long total = run(-1, [](int, TMapLayer&, const TTempDir&) {});
        ASSERT_GT(total, 0);
        // Every allocation of a small case, a spread of them for a large one.
        const long step = total / 400 + 1;
        int outOfMemory = 0;
        for (long failAt = 0; failAt < total; failAt += step) {
            run(failAt, [&](int result, TMapLayer& layer, const TTempDir& dir) {
                ASSERT_NE(result, -99999) << "an exception left the library at allocation " << failAt;
                outOfMemory += result == GISFILE_ERR_DATA ? 1 : 0;
                // The layer is whole: it can be measured and written again.
                layer.CalculateGeoExtents();
                EXPECT_EQ(TGisMap().WriteFile(dir.File("again.mif").c_str(), &layer), GISFILE_OK)
                    << "after allocation " << failAt << " failed";
            });
        }
        EXPECT_GT(outOfMemory, 0) << "no allocation failure came back as 6003";
    }
}

}  // namespace
