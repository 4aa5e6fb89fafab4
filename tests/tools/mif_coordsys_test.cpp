// MIF CoordSys clauses as PROJ strings: the common forms GDAL writes for UTM, State Plane and
// Albers zones map to the parameters PROJ takes (false easting and northing in metres), and
// what is not mapped is named.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "../../tools/tlgis/mif_coordsys.h"

namespace {

struct TCoordSysCase {
    const char* clause;
    std::string proj;     // the PROJ string, or empty when the clause is refused
    std::string error{};  // then a text the error holds
};

TEST(MifCoordSys, CommonFormsMapToProjStrings) {
    const std::string tail = " +no_defs +type=crs";
    // clang-format off
    const std::vector<TCoordSysCase> cases = {
        {"CoordSys Earth Projection 8, 104, \"m\", -93, 0, 0.9996, 500000, 0",
         "+proj=tmerc +lon_0=-93 +lat_0=0 +k=0.9996 +x_0=500000 +y_0=0 +datum=WGS84 +units=m" + tail},
        {"  coordsys earth projection 8, 74, \"m\", -45, 0, 0.9996, 500000, 10000000 Bounds (0, 0) (1e6, 1e7)",
         "+proj=tmerc +lon_0=-45 +lat_0=0 +k=0.9996 +x_0=500000 +y_0=10000000 +datum=NAD83 +units=m" + tail},
        {"CoordSys Earth Projection 3, 74, \"survey ft\", -98.5, 31.6666666666667, 32.1333333333333, "
         "33.9666666666667, 1968500, 6561666.667",
         "+proj=lcc +lon_0=-98.5 +lat_0=31.6666666666667 +lat_1=32.1333333333333 +lat_2=33.9666666666667 "
         "+x_0=600000 +y_0=2000000.0001016003 +datum=NAD83 +units=us-ft" + tail},
        {"CoordSys Earth Projection 9, 74, \"m\", -96, 23, 29.5, 45.5, 0, 0",
         "+proj=aea +lon_0=-96 +lat_0=23 +lat_1=29.5 +lat_2=45.5 +x_0=0 +y_0=0 +datum=NAD83 +units=m" + tail},
        {"CoordSys Earth Projection 8, 115, \"km\", 9, 0, 0.9996, 500, 0",
         "+proj=tmerc +lon_0=9 +lat_0=0 +k=0.9996 +x_0=500000 +y_0=0 +ellps=GRS80 +towgs84=0,0,0 +units=km" + tail},
        {"CoordSys Earth Projection 1, 62", "+proj=longlat +datum=NAD27" + tail},
        {"CoordSys Earth Projection 1, 0", ""},  // the library's own files: degrees as they are
        {"CoordSys Earth Projection 8, 104, \"m\", -93", "", "takes 5 parameters after its units, 1 given"},
        {"CoordSys Earth Projection 3, 74, \"m\", 1, 2, 3, 4, 5, 6, 7", "", "takes 6 parameters after its units, 7"},
        {"CoordSys Earth Projection 8, 999, 0, 1, 2, 3, \"m\", -93, 0, 0.9996, 500000, 0", "", "datum 999"},
        {"CoordSys Earth Projection 8, 104, \"chain\", -93, 0, 0.9996, 500000, 0", "", "units \"chain\""},
        {"CoordSys Earth Projection 8, 104, m, -93, 0, 0.9996, 500000, 0", "", "units in quotes"},
        {"CoordSys Earth Projection 8, 104, \"m\", -93, 0, x, 500000, 0", "", "'x' is not a number"},
        {"CoordSys Earth Projection 10, 104, \"m\", 0", "", "projection 10"},
        {"CoordSys Earth Projection 1, 104, \"m\"", "", "takes nothing after its datum"},
        {"CoordSys Earth Projection 8, 104, \"m\", -93, 0, 0.9996, 500000, 0 Affine Units \"m\", 1, 0, 0, 0, 1, 0",
         "", "Affine"},
        {"CoordSys NonEarth Units \"m\" Bounds (0, 0) (100, 100)", "", "CoordSys NonEarth names no place"},
        {"CoordSys Earth", "", "has no Projection"},
        {"CoordSys Earth Projection", "", "needs a type and a datum"},
    };
    // clang-format on
    for (const TCoordSysCase& c : cases) {
        std::string proj = "unset", error;
        const bool mapped = MifCoordSysToProj(c.clause, proj, error);
        EXPECT_EQ(mapped, c.error.empty()) << c.clause << ": " << error;
        if (c.error.empty())
            EXPECT_EQ(proj, c.proj) << c.clause;
        else
            EXPECT_NE(error.find(c.error), std::string::npos) << c.clause << ": " << error;
    }
}

}  // namespace
