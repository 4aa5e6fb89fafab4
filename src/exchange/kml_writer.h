#pragma once
// Features as a KML 2.2 document: the layer's name, shared styles so that Google Earth shows
// inclusion boundaries green, exclusion boundaries red, open lines blue, spray swaths
// semi-transparent by applied rate (lighter for less) and AB lines and swath lines grey; then
// one Placemark per feature with its name, style and ExtendedData.

#include <string>
#include <vector>

#include "exchange_feature.h"

std::string WriteKmlText(const std::vector<TExchangeFeature>& features, const std::string& name);
