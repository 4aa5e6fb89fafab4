#pragma once
// Colours and symbols of the objects the .mif writer draws. Colours are MapInfo colour numbers:
// red * 65536 + green * 256 + blue.

constexpr unsigned long kMifRed = 16711680;      // exclusion polygons and swaths
constexpr unsigned long kMifGreen = 65280;       // other polygons
constexpr unsigned long kMifMagenta = 16711935;  // markers
constexpr unsigned long kMifBrown = 9127187;     // polylines
constexpr unsigned long kMifBlack = 0;           // points of the complete profile

// Symbol shape and size of a marker point.
constexpr int kMifMarkerShape = 32;
constexpr int kMifMarkerSize = 20;
// Size of the point that carries a spray sample's row when complete rows are written.
constexpr int kMifSampleSize = 6;
// Size of a plain point (no marker) written by the complete profile.
constexpr int kMifPointSize = 8;
