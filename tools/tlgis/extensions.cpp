#include "extensions.h"

namespace {
std::vector<TToolExtension>& Registry() {
    static std::vector<TToolExtension> registry;
    return registry;
}
}  // namespace

int RegisterToolExtension(TToolExtension extension) {
    Registry().push_back(std::move(extension));
    return static_cast<int>(Registry().size());
}

const std::vector<TToolExtension>& ToolExtensions() {
    return Registry();
}
