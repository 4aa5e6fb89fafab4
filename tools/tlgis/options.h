#pragma once
// Command-line options shared by the tlgis commands.

#include <map>
#include <string>
#include <vector>

struct TToolOptions {
    std::string strCommand;
    std::vector<std::string> positional;
    std::map<std::string, std::string> values;  // --name VALUE (or --name=VALUE)
    std::vector<std::string> flags;             // --name without a value

    bool Has(const std::string& flag) const;
    // The value of an option, or fallback when it was not given.
    std::string Get(const std::string& name, const std::string& fallback = "") const;
    bool HasValue(const std::string& name) const { return values.count(name) != 0; }
};

// Options that take a value; every other --name is a flag.
bool OptionTakesValue(const std::string& name);
// Flags every command knows, and those the format extensions add.
bool IsKnownFlag(const std::string& name);
// Parses argv; an unknown --flag is an error; on error returns false with a message.
bool ParseToolOptions(int argc, char** argv, TToolOptions& out, std::string& error);
