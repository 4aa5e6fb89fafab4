// GeoJSON: the input is one file; what loads is written as GeoJSON and KML and read again.

#include "exchange_round_trip.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    return tl_fuzz::ExchangeRoundTrip(EXCHANGE_FILE_GEOJSON, data, size);
}
