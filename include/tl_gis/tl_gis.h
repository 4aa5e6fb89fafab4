#pragma once
// Public interface of tl_gis: the dispatcher, the format base, the host map model and the
// message and language services a host configures.

#include "gis/coordinates.h"
#include "gis/gis_file.h"
#include "gis/gis_map.h"
#include "gis/language.h"
#include "hostmap/features.h"
#include "hostmap/map_image.h"
#include "hostmap/map_layer.h"
#include "platform/message_box.h"
#include "platform/result_codes.h"
