#pragma once
// The tlgis commands. Each returns the process exit status.

#include "options.h"

int RunInfo(const TToolOptions& options);
int RunConvert(const TToolOptions& options);
int RunRender(const TToolOptions& options);
int RunDemo(const TToolOptions& options);

// Exit status for a usage error.
constexpr int kExitUsage = 2;
