#pragma once
// The language-table ids of every text the library shows, and the printf conversions each text
// must carry (the message fills them in), in one list that the shipped language files are
// checked against.

enum TTextId : int {
    TEXT_SOURCE_BEFORE_FORMAT = 1010,  // "This" of "This DXF file" in the projected-coordinate question
    TEXT_SOURCE_AFTER_FORMAT = 1011,   // "file"
    TEXT_PROJECTED_LOOKS = 2039,       // the question: %s looks projected
    TEXT_PROJECTED_VALUES = 2040,      // ... the two values
    TEXT_PROJECTED_STOP = 2041,        // ... stop the import?
    TEXT_JOB_POLYLINE_MEMORY = 3080,   // vertex memory ran out in a polyline
    TEXT_JOB_MEMORY_DETAIL = 3081,     // second line of the two vertex-memory messages
    TEXT_JOB_NAME_ERROR = 3082,        // the output file name cannot be used
    TEXT_JOB_NAME_NUMBER = 3083,       // ... it must be a job number 1 to 999
    TEXT_JOB_COPY_MEMORY = 3084,       // no memory for a vertex copy while writing
    TEXT_JOB_TOTAL_EXCEEDED = 3085,    // first of the six limit warnings, 3085 to 3090
    TEXT_JOB_LINES_EXCEEDED = 3086,
    TEXT_JOB_VERTICES_EXCEEDED = 3087,
    TEXT_JOB_TOTAL_EXCEEDED_2 = 3088,
    TEXT_JOB_LINES_EXCEEDED_2 = 3089,
    TEXT_JOB_VERTICES_EXCEEDED_2 = 3090,
    TEXT_PMH_WRITE_FAILED = 3091,   // a rate map could not be written to the end
    TEXT_JOB_NAME_LENGTH = 3096,    // ... it must have at most 20 characters
    TEXT_CAPTION = 5054,            // the caption of most messages
    TEXT_NONSPRAY_NO_LAYER = 5084,  // the non-spray table %s was left empty: no layer
    TEXT_JOB_SUMMARY_B = 5090,
    TEXT_JOB_REDUCED = 5173,  // lines and vertices written after reduction
    TEXT_JOB_SUMMARY_1 = 5185,
    TEXT_JOB_SUMMARY_2 = 5186,
    TEXT_JOB_SUMMARY_3 = 5187,
    TEXT_JOB_SUMMARY_A = 5188,
    TEXT_ERROR_CAPTION = 12002,          // caption of the missing language file's message
    TEXT_JOB_POLYGON_MEMORY = 17001,     // vertex memory ran out in a boundary
    TEXT_JOB_LIMIT_WARNING = 17002,      // heading of the limit warnings
    TEXT_LANGUAGE_FILE_MISSING = 17008,  // the language file %s cannot be opened
};

struct TLibraryText {
    TTextId eId;
    const char* pszConversions;  // the conversion letters of its printf directives, in order
};

inline constexpr TLibraryText LIBRARY_TEXTS[] = {
    {TEXT_SOURCE_BEFORE_FORMAT, ""},
    {TEXT_SOURCE_AFTER_FORMAT, ""},
    {TEXT_PROJECTED_LOOKS, "s"},
    {TEXT_PROJECTED_VALUES, "ff"},
    {TEXT_PROJECTED_STOP, ""},
    {TEXT_JOB_POLYLINE_MEMORY, "s"},
    {TEXT_JOB_MEMORY_DETAIL, ""},
    {TEXT_JOB_NAME_ERROR, ""},
    {TEXT_JOB_NAME_NUMBER, ""},
    {TEXT_JOB_COPY_MEMORY, ""},
    {TEXT_JOB_TOTAL_EXCEEDED, ""},
    {TEXT_JOB_LINES_EXCEEDED, ""},
    {TEXT_JOB_VERTICES_EXCEEDED, ""},
    {TEXT_JOB_TOTAL_EXCEEDED_2, ""},
    {TEXT_JOB_LINES_EXCEEDED_2, ""},
    {TEXT_JOB_VERTICES_EXCEEDED_2, ""},
    {TEXT_PMH_WRITE_FAILED, ""},
    {TEXT_JOB_NAME_LENGTH, ""},
    {TEXT_CAPTION, ""},
    {TEXT_NONSPRAY_NO_LAYER, "s"},
    {TEXT_JOB_SUMMARY_B, ""},
    {TEXT_JOB_REDUCED, "dd"},
    {TEXT_JOB_SUMMARY_1, ""},
    {TEXT_JOB_SUMMARY_2, ""},
    {TEXT_JOB_SUMMARY_3, ""},
    {TEXT_JOB_SUMMARY_A, ""},
    {TEXT_ERROR_CAPTION, ""},
    {TEXT_JOB_POLYGON_MEMORY, "s"},
    {TEXT_JOB_LIMIT_WARNING, ""},
    {TEXT_LANGUAGE_FILE_MISSING, "s"},
};
