#pragma once
// Public interface of tl_gis: the dispatcher, the format base, the host map model and the
// message and language services a host configures.

#include <tl_gis/gis/coordinates.h>
#include <tl_gis/gis/gis_file.h>
#include <tl_gis/gis/gis_map.h>
#include <tl_gis/gis/language.h>
#include <tl_gis/hostmap/features.h>
#include <tl_gis/hostmap/map_image.h>
#include <tl_gis/hostmap/map_layer.h>
#include <tl_gis/platform/message_box.h>
#include <tl_gis/platform/result_codes.h>
