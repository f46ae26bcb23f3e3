#include "orvel/core/dir.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "orvel/core/native_path.h"

namespace teskcore::filesupport {
namespace fs = std::filesystem;

namespace {

[[noreturn]] void Fail(const fs::path& path, const std::string& cause) {
  throw dir_exception(path.string() + ": " + cause);
}

// Null until a host sets it.
Dir& HostPrefDir() {
  static auto& folder = *new Dir;  // never destroyed
  return folder;
}

fs::path PlatformPrefDir() {
  // XDG base directories are absolute paths; any other value is passed over.
  const char* const config = std::getenv("XDG_CONFIG_HOME");
  if (config != nullptr && *config == '/') return config;
  const char* const home = std::getenv("HOME");
  return fs::path(home != nullptr && *home == '/' ? home : "/") / ".config";
}

using IsWanted = bool (*)(const fs::directory_entry&, std::error_code&);

bool IsFolder(const fs::directory_entry& entry, std::error_code& error) {
  return entry.is_directory(error);
}

bool IsFile(const fs::directory_entry& entry, std::error_code& error) {
  return entry.is_regular_file(error);
}

template <typename Entry>
std::vector<Entry> List(const Dir& folder, IsWanted isWanted, const Dir::Filter& filter,
                        const Dir::Cancel& cancel, Dir::Links links) {
  const fs::path path = ToNative(folder.FullPath());
  std::error_code error;
  std::vector<std::u16string> names;
  for (fs::directory_iterator at(path, error), end; !error && at != end; at.increment(error)) {
    if (cancel && cancel()) break;
    const std::u16string name = FromNative(at->path().filename());
    std::error_code entryError;  // an entry that vanished meanwhile is not wanted
    if (links == Dir::Links::kSkip && at->is_symlink(entryError)) continue;
    if (isWanted(*at, entryError) && (!filter || filter(name))) names.push_back(name);
  }
  if (error) Fail(path, error.message());
  std::sort(names.begin(), names.end());
  std::vector<Entry> entries;
  entries.reserve(names.size());
  for (const auto& name : names) entries.emplace_back(folder, name);
  return entries;
}

}  // namespace

Dir::Dir(const std::u16string& path) : path_(path) {
  while (path_.size() > 1 && path_.back() == u'/') path_.pop_back();
}

Dir::Dir(const Dir& parent, const std::u16string& name) : path_(JoinPath(parent.FullPath(), name)) {
  if (!IsPathElement(name)) Fail(ToNative(path_), "is not the name of a folder");
}

Dir Dir::PrefDir() {
  const Dir& set = HostPrefDir();
  return set.FullPath().empty() ? Dir(FromNative(PlatformPrefDir())) : set;
}

void Dir::SetPrefDir(const Dir& folder) { HostPrefDir() = folder; }

Dir Dir::Parent() const { return Dir(FromNative(ToNative(path_).parent_path())); }

std::u16string Dir::GetName() const { return FileNameOf(path_); }

bool Dir::Exists() const {
  std::error_code error;
  return fs::is_directory(ToNative(path_), error);
}

void Dir::Create() const {
  const fs::path path = ToNative(path_);
  std::error_code error;
  fs::create_directories(path, error);
  if (!Exists()) Fail(path, error ? error.message() : "is not a folder");
}

void Dir::Delete() const {
  const fs::path path = ToNative(path_);
  if (!Exists()) Fail(path, "does not exist");
  std::error_code error;
  if (!fs::remove(path, error)) Fail(path, error.message());
}

Dir::SubdirIterator Dir::BeginSubdirs(const Filter& filter, const Cancel& cancel,
                                      Links links) const {
  return SubdirIterator(List<Dir>(*this, IsFolder, filter, cancel, links));
}

Dir::FileIterator Dir::BeginFiles(const Filter& filter, const Cancel& cancel, Links links) const {
  return FileIterator(List<File>(*this, IsFile, filter, cancel, links));
}

}  // namespace teskcore::filesupport
