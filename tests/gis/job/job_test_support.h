#pragma once
// Helpers of the JOB tests: a language file of recognisable words, layers built in memory,
// and loading JOB text through a temporary file.

#include <initializer_list>
#include <string>
#include <vector>

#include "features/pattern.h"
#include "gis/gis_file.h"
#include "gis/job/job_file.h"
#include "gis/language.h"
#include "test_support.h"

// Points the library at a language file whose text for id N is "W<N>" (with a few format
// texts where the arguments matter), and restores the previous folder afterwards.
class TTestLanguage {
public:
    TTestLanguage();
    ~TTestLanguage();

private:
    TTempDir m_dir;
    std::string m_strPrevious;
};

// Keeps the writer's statics as a test leaves them and restores the defaults after.
class TJobSettings {
public:
    TJobSettings(int format, int option, double toleranceM = 0.0);
    ~TJobSettings();
};

TFeatureLine* AddLine(TMapLayer& layer, std::uint32_t kind, int boundType,
                      const std::vector<tagLOC>& vertices, const std::string& id = "");
TFeatureMarker* AddMarker(TMapLayer& layer, const std::string& id, const std::string& name, int symbol,
                          tagLOC loc);
// A pattern with the given points (letter -> position); the others stay at (0, 0).
TFeaturePattern* AddPattern(TMapLayer& layer, const std::string& id, int kind,
                            std::initializer_list<std::pair<char, tagLOC>> points);

// A ring of n vertices on a circle of radius metres around (lat, lon), counter-clockwise.
std::vector<tagLOC> CircleRing(double lat, double lon, double radiusM, int n);
// A wavy open line of n vertices heading east from (lat, lon), with a wave of amplitude metres.
std::vector<tagLOC> WavyLine(double lat, double lon, int n, double amplitudeM, unsigned seed = 1);

// Loads JOB text (written as bytes to a temporary file) into the layer; returns the result.
int LoadJobText(const std::string& text, TMapLayer& layer, TGisFileJob* job = nullptr);
// Writes the layer to a file of the given name in a temporary folder; returns the result and
// the bytes written (empty when no file was made).
int WriteJob(const std::string& fileName, TMapLayer& layer, std::string& bytes, bool* created = nullptr);
