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
