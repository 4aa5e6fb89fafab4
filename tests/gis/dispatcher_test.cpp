#include <gtest/gtest.h>

#include "gis/gis_map.h"

TEST(GisFileType, ByExtension) {
    EXPECT_EQ(TGisMap::GetGisFileType("C:\\data\\field.job"), GIS_FILE_JOB);
}
