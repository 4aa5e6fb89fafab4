#include "platform/memory_files.h"

#include <algorithm>
#include <atomic>
#include <map>
#include <mutex>
#include <vector>

namespace {

// Every memory folder and file of the process. Real loads only ever read the count.
struct TMemoryTable {
    std::atomic<int> iFolders{0};
    std::mutex lock;
    std::vector<std::string> folders;
    std::map<std::string, std::string, std::less<>> files;
};

TMemoryTable& Table() {
    static TMemoryTable table;
    return table;
}

bool IsBelow(std::string_view path, std::string_view folder) {
    return path.size() > folder.size() + 1 && path.starts_with(folder) && path[folder.size()] == '/';
}

// Call with the table locked.
bool IsBelowAnyFolder(const TMemoryTable& table, std::string_view path) {
    return std::any_of(table.folders.begin(), table.folders.end(),
                       [&](const std::string& folder) { return IsBelow(path, folder); });
}

// Call with the table locked: removes the files below folder.
void EraseBelow(TMemoryTable& table, std::string_view folder) {
    auto it = table.files.lower_bound(folder);
    while (it != table.files.end() && it->first.starts_with(folder)) {
        if (IsBelow(it->first, folder))
            it = table.files.erase(it);
        else
            ++it;
    }
}

// Calls use with the bytes of the memory file at path, the table locked; false when there is none.
template <class TUse>
bool UseMemoryFile(const char* path, TUse use) {
    TMemoryTable& table = Table();
    if (path == nullptr || table.iFolders.load(std::memory_order_acquire) == 0) return false;
    const std::lock_guard guard(table.lock);
    const auto it = table.files.find(std::string_view(path));
    if (it == table.files.end()) return false;
    use(it->second);
    return true;
}

}  // namespace

TMemoryFolder::TMemoryFolder(std::string folder) : m_strFolder(std::move(folder)) {
    TMemoryTable& table = Table();
    const std::lock_guard guard(table.lock);
    EraseBelow(table, m_strFolder);
    table.folders.push_back(m_strFolder);
    table.iFolders.store(static_cast<int>(table.folders.size()), std::memory_order_release);
}

TMemoryFolder::~TMemoryFolder() {
    TMemoryTable& table = Table();
    const std::lock_guard guard(table.lock);
    EraseBelow(table, m_strFolder);
    const auto it = std::find(table.folders.begin(), table.folders.end(), m_strFolder);
    if (it != table.folders.end()) table.folders.erase(it);
    table.iFolders.store(static_cast<int>(table.folders.size()), std::memory_order_release);
}

std::string TMemoryFolder::File(std::string_view name) const {
    std::string path = m_strFolder;
    path += '/';
    path += name;
    return path;
}

void TMemoryFolder::Put(std::string_view name, std::string_view bytes) const {
    StoreMemoryFile(File(name), std::string(bytes));
}

bool TMemoryFolder::Get(std::string_view name, std::string& bytes) const {
    return ReadMemoryFile(File(name).c_str(), bytes);
}

void TMemoryFolder::Clear() const {
    TMemoryTable& table = Table();
    const std::lock_guard guard(table.lock);
    EraseBelow(table, m_strFolder);
}

bool IsMemoryPath(const char* path) {
    TMemoryTable& table = Table();
    if (path == nullptr || table.iFolders.load(std::memory_order_acquire) == 0) return false;
    const std::lock_guard guard(table.lock);
    return IsBelowAnyFolder(table, path);
}

bool ReadMemoryFile(const char* path, std::string& bytes) {
    return UseMemoryFile(path, [&](const std::string& stored) { bytes = stored; });
}

bool GetMemoryFileSize(const char* path, std::int64_t& size) {
    return UseMemoryFile(path,
                         [&](const std::string& stored) { size = static_cast<std::int64_t>(stored.size()); });
}

void StoreMemoryFile(const std::string& path, std::string bytes) {
    TMemoryTable& table = Table();
    if (table.iFolders.load(std::memory_order_acquire) == 0) return;
    const std::lock_guard guard(table.lock);
    if (IsBelowAnyFolder(table, path)) table.files.insert_or_assign(path, std::move(bytes));
}
