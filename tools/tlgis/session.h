#pragma once
// What every tlgis command sets up first: the configuration folder and language, and how the
// library's message boxes reach the user.

#include <string>

#include "options.h"

// Chooses the configuration folder (--config, TLGIS_CONFIG, ./Config, the installed copy, the
// source tree's copy), loads the language (--lang overrides the configured one) and installs
// the message handler that follows --projected and --quiet. False with a message on bad values.
bool SetUpSession(const TToolOptions& options, std::string& error);

// Prints "tlgis: <message>" on stderr.
void PrintError(const std::string& message);
// Prints a note on stderr unless --quiet was given.
void PrintNote(const std::string& message);
// Silences notes from here on (the demo prints its own lines instead).
void SetQuietNotes(bool quiet);
// Starts a new file: the next question about projected coordinates is shown and answered again
// (with --projected stop or continue, later ones in the same file are answered the same way
// without a word).
void ForgetProjectedAnswer();
// --projected reproject (also asked for by --crs, and by --complete where PROJ is built in).
bool Reprojecting();
// Under reproject: the file being read asked the question, so it holds projected coordinates
// that no transform mapped. Yes was answered without a word.
bool SawProjectedCoordinates();
