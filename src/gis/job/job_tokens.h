#pragma once
// The token buffer shared by the JOB readers (and the PMH reader through them). Only code of
// this folder includes it.

#include <cstddef>
#include <string_view>

constexpr int JOB_TOKEN_COUNT = 4;
constexpr int JOB_TOKEN_CHARS = 39;
// A line is read at most this many characters at a time; a longer one comes in pieces.
constexpr std::size_t JOB_LINE_CHARS = 99;

// The tokens of the last line read, NUL-terminated; absent tokens are empty. One buffer for
// the whole library, so only one JOB or PMH read may run at a time.
extern char g_szJobTokens[JOB_TOKEN_COUNT][JOB_TOKEN_CHARS + 1];

// Splits a NUL-terminated line into g_szJobTokens: a token is a run of bytes 33 to 127 of at
// most 39 characters (a longer run goes on as the next token); every other byte separates, and
// a NUL ends the line.
void TokenizeJobLine(const char* line);

inline std::string_view JobToken(int index) {
    return g_szJobTokens[index];
}

class TTextFile;

// Reads one line of at most 99 characters and tokenises it. True at end of file.
bool ReadJobTokens(TTextFile& file);

// Line numbers for load reports, shared like the tokens: the line of the file that the last
// ReadJobTokens read (every piece of a long line has its line's number), and the line the next
// read starts in. A reader that moves the file sets the next line to match.
long long GetJobLine();
long long GetJobNextLine();
void SetJobNextLine(long long line);

// A coordinate pair of a marker, boundary or polyline body is taken when it is within the
// degree ranges and not within one degree of latitude 0 and longitude 0 together.
bool IsAcceptedJobCoordinate(double lat, double lon);
