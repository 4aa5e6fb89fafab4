#pragma once
// The whole public interface of tl_gis: the dispatcher and the five format classes with their
// settings, the host map model, the library's own elements, the shared types and helpers, the
// message handler and the language service. A host includes this header, or the ones it needs.

#include <tl_gis/export.h>
#include <tl_gis/version.h>

// Platform services a host may replace or use: message boxes, files, numbers as the system
// writes them, and the result codes.
#include <tl_gis/platform/file_base.h>
#include <tl_gis/platform/message_box.h>
#include <tl_gis/platform/numbers.h>
#include <tl_gis/platform/result_codes.h>
#include <tl_gis/platform/text_file.h>

// The host map model.
#include <tl_gis/hostmap/element_kinds.h>
#include <tl_gis/hostmap/features.h>
#include <tl_gis/hostmap/geodesy.h>
#include <tl_gis/hostmap/loc.h>
#include <tl_gis/hostmap/map_element.h>
#include <tl_gis/hostmap/map_image.h>
#include <tl_gis/hostmap/map_layer.h>

// The library's own elements.
#include <tl_gis/features/buffer.h>
#include <tl_gis/features/feature_pattern.h>
#include <tl_gis/features/feature_spray.h>
#include <tl_gis/features/spray_record.h>

// The framework: format base, dispatcher, line assembly, geometry, UTM, texts.
#include <tl_gis/gis/coordinates.h>
#include <tl_gis/gis/geometry.h>
#include <tl_gis/gis/gis_file.h>
#include <tl_gis/gis/gis_map.h>
#include <tl_gis/gis/language.h>
#include <tl_gis/gis/line_assembly.h>
#include <tl_gis/gis/load_report.h>
#include <tl_gis/gis/utm.h>

// The formats, and the flight-data file that recorded spray can be made from.
#include <tl_gis/gis/dxf/gis_file_dxf.h>
#include <tl_gis/gis/flight/flight_csv.h>
#include <tl_gis/gis/job/gis_file_job.h>
#include <tl_gis/gis/midmif/gis_file_midmif.h>
#include <tl_gis/gis/pmh/gis_file_pmh.h>
#include <tl_gis/gis/shp/gis_file_shp.h>
