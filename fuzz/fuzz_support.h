#pragma once
// What the fuzz targets share: a library set up to run without a person (silent message boxes),
// a scratch folder held in memory for readers and writers that take a path, and the layout
// that packs several files (a shapefile's .shp, .shx and .dbf, say) into one input.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tl_fuzz {

// Runs once per process: installs a message handler that shows nothing, and points the library
// at the source tree's configuration folder so that messages are formatted from real texts.
// Every input then decides the answer to Yes/No questions by its size (odd: Yes), so that both
// the stopping and the going-on paths are reached and a saved input replays the same way.
// Empties the scratch folder, so that no file of an earlier input is seen.
void PrepareInput(std::size_t size);

// The scratch folder: a memory folder, so that the readers and writers open its files by path
// as always while nothing reaches the disk (a file round trip costs microseconds, not the
// milliseconds of a file system that writes back a replaced file when it is closed).
const std::string& ScratchFolder();
// Stores bytes as ScratchFolder()/name, replacing the file, and returns its path.
std::string WriteScratchFile(const std::string& name, std::string_view bytes);
// The bytes of ScratchFolder()/name (a writer's output, say); empty when there is none.
std::string ReadScratchFile(const std::string& name);

// Multi-file inputs: every file but the last is stored as a 4-byte little-endian length and
// its bytes; the last file takes what remains. A length beyond the input's end is cut to it,
// and missing files are empty, so every input splits into exactly count files.
std::vector<std::string_view> SplitInput(const std::uint8_t* data, std::size_t size, std::size_t count);
std::string PackInput(const std::vector<std::string>& files);

}  // namespace tl_fuzz

// The entry point every target defines, shared by libFuzzer and the replay program.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
