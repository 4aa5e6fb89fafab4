#pragma once
// The body of the GeoJSON and KML/KMZ targets: the input is one file of the format, loaded into
// a layer in memory; what loads is written as GeoJSON and as KML and each read again. The
// exchange module links the shared library, so these targets use its public interface and the
// module's own functions, not the scratch folder of the library's targets: every file stays a
// text in memory. A Yes/No question is answered by the input's size (odd: Yes), and bit 1 of
// the size has the readers take the name property as each element's id, so the chosen-property
// path is fuzzed too.

#include <cstddef>
#include <cstdint>
#include <string>

#include <tl_gis/gis/gis_file.h>
#include <tl_gis/platform/message_box.h>
#include "exchange_files.h"
#include "geojson_writer.h"
#include "kml_writer.h"
#include "layer_export.h"

namespace tl_fuzz {

inline int ExchangeRoundTrip(TExchangeFileType type, const std::uint8_t* data, std::size_t size) {
    static int answer = ANSWER_NO;
    static const bool prepared = [] {
        SetMessageBoxHandler(
            [](const TMessageBoxRequest& request) { return request.IsQuestion() ? answer : ANSWER_OK; });
        return true;
    }();
    (void)prepared;
    answer = (size % 2) ? ANSWER_YES : ANSWER_NO;
    TGisFile::s_strIdField = (size & 2) ? "name" : "";

    TMapLayer layer;
    TLoadReport report;
    std::unique_ptr<TGisFileExchange> reader = CreateExchangeFile(type);
    reader->SetLoadReport(&report);
    reader->LoadBytes(std::string(reinterpret_cast<const char*>(data), size), &layer);
    if (layer.GetElementCount() == 0) return 0;
    const std::vector<TExchangeFeature> features = ExportLayerFeatures(layer, {});
    for (const auto& [back, text] :
         {std::make_pair(EXCHANGE_FILE_GEOJSON, WriteGeoJsonText(features, layer.m_strLLB)),
          std::make_pair(EXCHANGE_FILE_KML, WriteKmlText(features, layer.m_strLLB))}) {
        TMapLayer again;
        CreateExchangeFile(back)->LoadBytes(text, &again);
    }
    return 0;
}

}  // namespace tl_fuzz
