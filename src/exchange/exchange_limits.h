#pragma once
// What the exchange readers take on before they give up with a clear error, so that a hostile
// file cannot make them run out of memory or time: the size of a file and of the KML inside a
// KMZ, how deep JSON and XML may nest, and how many values one GeoJSON feature may hold.

#include <cstddef>

constexpr std::size_t EXCHANGE_MAX_BYTES = std::size_t{256} << 20;  // 256 MiB
constexpr int EXCHANGE_MAX_DEPTH = 64;
constexpr std::size_t GEOJSON_MAX_FEATURE_VALUES = 4'000'000;
