#pragma once
// Units and the figure of the earth that every part of the library measures with. Inside the
// library lengths are metres, speeds metres per second, areas hectares and rates litres (or
// kilograms) per hectare; tables and rows in US units convert with these factors.

constexpr double DEGREES_TO_RADIANS = 0.017453292519943334;
constexpr double RADIANS_TO_DEGREES = 57.295779513082195;

constexpr double METRES_PER_FOOT = 0.3048;
constexpr double FEET_PER_METRE = 3.280839895013123;
constexpr double MPH_PER_METRE_PER_SECOND = 2.236936296;
constexpr double ACRES_PER_HECTARE = 2.471053828349333;
constexpr double GALLONS_PER_ACRE_PER_LITRE_PER_HECTARE = 0.10690663552904765;
constexpr double POUNDS_PER_ACRE_PER_KILOGRAM_PER_HECTARE = 0.8921791166813499;

// The WGS 84 ellipsoid.
constexpr double WGS84_SEMI_MAJOR_AXIS_M = 6378137.0;
constexpr double WGS84_INVERSE_FLATTENING = 298.257223563;
constexpr double WGS84_ECCENTRICITY_SQUARED = 0.006694379990126406;
