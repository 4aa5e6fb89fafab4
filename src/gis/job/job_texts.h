#pragma once
// Language-table ids of the texts the JOB reader and writer show.

enum : int {
    JOB_TEXT_POLYLINE_MEMORY = 3080,  // vertex memory ran out in a polyline
    JOB_TEXT_MEMORY_DETAIL = 3081,    // second line of the two vertex-memory messages
    JOB_TEXT_NAME_ERROR = 3082,       // the output file name cannot be used
    JOB_TEXT_NAME_NUMBER = 3083,      // ... it must be a job number 1 to 999
    JOB_TEXT_COPY_MEMORY = 3084,      // no memory for a vertex copy while writing
    JOB_TEXT_TOTAL_EXCEEDED = 3085,   // first of the six limit warnings, 3085 to 3090
    JOB_TEXT_NAME_LENGTH = 3096,      // ... it must have at most 20 characters
    JOB_TEXT_CAPTION = 5054,
    JOB_TEXT_SUMMARY_B = 5090,
    JOB_TEXT_REDUCED = 5173,  // lines and vertices written after reduction
    JOB_TEXT_SUMMARY_1 = 5185,
    JOB_TEXT_SUMMARY_2 = 5186,
    JOB_TEXT_SUMMARY_3 = 5187,
    JOB_TEXT_SUMMARY_A = 5188,
    JOB_TEXT_POLYGON_MEMORY = 17001,  // vertex memory ran out in a boundary
    JOB_TEXT_LIMIT_WARNING = 17002,   // heading of the limit warnings
};
