// KML and KMZ: the input is one file, read as a KMZ archive when it starts as a zip does ("PK")
// and as KML otherwise; what loads is written as GeoJSON and KML and read again.

#include "exchange_round_trip.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const bool zip = size >= 2 && data[0] == 'P' && data[1] == 'K';
    return tl_fuzz::ExchangeRoundTrip(zip ? EXCHANGE_FILE_KMZ : EXCHANGE_FILE_KML, data, size);
}
