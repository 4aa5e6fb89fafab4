#pragma once
// What the JOB writer takes from the output file name.

#include <string>

struct TJobFileName {
    std::string strBase;     // file name without folder, up to its first '.'
    std::string strRest;     // the file name from its first '.' on
    std::string strJobName;  // the base name without surrounding blanks, at most 20 characters
    long lJobNumber = 0;     // the base name as a number, for header versions 1 and 2
    int iErrorText = 0;      // text id of the rule the name breaks, 0 when it is usable
};

// Applies the file-name rule of a header format (0 and 1: a job number 1 to 999 of digits
// only; 2: at most 20 characters; other values: no rule). Both '\' and '/' end a folder.
TJobFileName ParseJobFileName(const char* path, int format);
