#pragma once
// The body of the single-file reader targets: the input is one file of a format; what loads is
// written back in the same format and read again, as a same-format conversion would.

#include <cstddef>
#include <cstdint>
#include <string>

#include <tl_gis/hostmap/map_layer.h>
#include <tl_gis/platform/result_codes.h>
#include "fuzz_support.h"

namespace tl_fuzz {

// Loads the file at path (in the scratch folder); when something loads, writes it back as
// outputName and loads that.
template <class TFormat>
int ReloadScratchFile(const std::string& path, const char* outputName) {
    TMapLayer layer;
    if (TFormat{}.LoadFile(path.c_str(), &layer, nullptr) != GISFILE_OK || layer.GetElementCount() == 0)
        return 0;
    const std::string copy = ScratchFolder() + "/" + outputName;
    if (TFormat{}.WriteFile(copy.c_str(), &layer) != GISFILE_OK) return 0;
    TMapLayer back;
    TFormat{}.LoadFile(copy.c_str(), &back, nullptr);
    return 0;
}

template <class TFormat>
int LoadWriteReload(const std::uint8_t* data, std::size_t size, const char* inputName,
                    const char* outputName) {
    PrepareInput(size);
    const std::string path = WriteScratchFile(inputName, {reinterpret_cast<const char*>(data), size});
    return ReloadScratchFile<TFormat>(path, outputName);
}

}  // namespace tl_fuzz
