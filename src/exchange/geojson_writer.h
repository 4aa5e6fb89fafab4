#pragma once
// Features as a GeoJSON FeatureCollection (RFC 7946): the layer's name as the collection's
// name, its bbox, then one feature a line. Coordinates are longitude first with at most nine
// decimals; rings keep the order and closing vertex the layer gives them.

#include <string>
#include <vector>

#include "exchange_feature.h"

std::string WriteGeoJsonText(const std::vector<TExchangeFeature>& features, const std::string& name);
