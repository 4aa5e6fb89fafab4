#pragma once
// Nothing is thrown across the library's interface. Every load and write runs through
// RunWithoutThrowing: memory that runs out inside a container or a string, or any other
// exception, ends the operation with GISFILE_ERR_DATA after cleanup has closed what it had
// open. What a reader added before stays in the layer, and the layer stays valid.

#include <tl_gis/platform/result_codes.h>

template <class Operation, class Cleanup>
int RunWithoutThrowing(Operation&& operation, Cleanup&& cleanup) noexcept {
    try {
        return operation();
    } catch (...) {
        cleanup();
        return GISFILE_ERR_DATA;
    }
}

template <class Operation>
int RunWithoutThrowing(Operation&& operation) noexcept {
    return RunWithoutThrowing(operation, [] {});
}
