#include "options.h"

#include <algorithm>
#include <set>

#include "extensions.h"

bool TToolOptions::Has(const std::string& flag) const {
    return std::find(flags.begin(), flags.end(), flag) != flags.end();
}

std::string TToolOptions::Get(const std::string& name, const std::string& fallback) const {
    const auto it = values.find(name);
    return it == values.end() ? fallback : it->second;
}

bool OptionTakesValue(const std::string& name) {
    static const std::set<std::string> common = {"projected", "config",   "lang",        "width",     "o",
                                                 "f",         "format",   "id-field",    "value-field",
                                                 "name-field"};
    if (common.count(name) != 0) return true;
    for (const TToolExtension& ext : ToolExtensions())
        for (const std::string& v : ext.valueOptions)
            if (v == name) return true;
    return false;
}

bool IsKnownFlag(const std::string& name) {
    static const std::set<std::string> common = {"help",     "version", "json", "points",
                                                 "progress", "quiet",   "q",    "complete"};
    if (common.count(name) != 0) return true;
    for (const TToolExtension& ext : ToolExtensions())
        for (const std::string& f : ext.flagOptions)
            if (f == name) return true;
    return false;
}

bool ParseToolOptions(int argc, char** argv, TToolOptions& out, std::string& error) {
    for (int i = 1; i < argc; ++i) {
        std::string arg = argv[i];
        if (arg.size() > 1 && arg[0] == '-' && arg != "-") {
            std::string name = arg.substr(arg[1] == '-' ? 2 : 1);
            std::string value;
            bool hasValue = false;
            const auto eq = name.find('=');
            if (eq != std::string::npos) {
                value = name.substr(eq + 1);
                name.resize(eq);
                hasValue = true;
            }
            if (name == "h") name = "help";
            if (OptionTakesValue(name)) {
                if (!hasValue) {
                    if (i + 1 >= argc) {
                        error = "option --" + name + " needs a value";
                        return false;
                    }
                    value = argv[++i];
                }
                out.values[name] = value;
            } else {
                if (!IsKnownFlag(name)) {
                    error =
                        "unknown option " + arg + " (tlgis help convert lists the options of every format)";
                    return false;
                }
                if (hasValue) {
                    error = "option --" + name + " takes no value";
                    return false;
                }
                out.flags.push_back(name);
            }
            continue;
        }
        if (out.strCommand.empty())
            out.strCommand = arg;
        else
            out.positional.push_back(arg);
    }
    return true;
}
