#include "orvel/presets/preset_folder.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <system_error>
#include <vector>

#include "orvel/core/file_error.h"
#include "orvel/core/native_path.h"
#include "orvel/core/text.h"
#include "orvel/presets/preset_trace.h"

namespace orvel {
namespace fs = std::filesystem;
using teskcore::filesupport::FromNative;
using teskcore::filesupport::IsPathElement;
using teskcore::filesupport::ToNative;

namespace {

bool IsLinkAt(const std::u16string& path) {
  std::error_code error;
  return fs::is_symlink(ToNative(path), error);
}

// False, traced behind `what`, when the folder does not let it.
bool Attempt(const char* what, const boost::function<void()>& work) {
  try {
    work();
    return true;
  } catch (const dir_exception& error) {
    TracePresetDetail(std::string(what) + ": " + error.what());
    return false;
  }
}

using IsWanted = bool (fs::directory_entry::*)(std::error_code& error) const;

// The listing tells what is a link; asking for each file by itself would cost more than all else.
template <typename Entry>
bool ForEachEntry(const Dir& folder, IsWanted isWanted, const Dir::Filter& filter,
                  const boost::function<void(const Entry& entry)>& visit) {
  std::vector<std::u16string> names;
  std::error_code error;
  for (fs::directory_iterator at(ToNative(folder.FullPath()), error), end; !error && at != end;
       at.increment(error)) {
    std::error_code vanished;
    if (at->is_symlink(vanished) || !((*at).*isWanted)(vanished)) continue;
    const std::u16string name = FromNative(at->path().filename());
    if (!filter || filter(name)) names.push_back(name);
  }
  if (error) {
    TracePresetDetail("Skipping preset folder: " + ShownPath(folder.FullPath()) + ": " +
                      error.message());
    return false;
  }
  std::ranges::sort(names);
  for (const auto& name : names) visit(Entry(folder, name));
  return true;
}

}  // namespace

bool IsFolderName(const std::string& modeID) {
  constexpr std::size_t kMaxLength = 200;
  const std::u16string wide = UTF8to16(modeID);
  return modeID.size() <= kMaxLength && modeID.find('\\') == std::string::npos &&
         IsPathElement(wide) && UTF16to8(wide) == modeID;
}

bool ForEachSubfolder(const Dir& folder, const boost::function<void(const Dir& folder)>& visit) {
  return ForEachEntry(folder, &fs::directory_entry::is_directory, {}, visit);
}

bool ForEachFile(const Dir& folder, const Dir::Filter& filter,
                 const boost::function<void(const File& file)>& visit) {
  return ForEachEntry(folder, &fs::directory_entry::is_regular_file, filter, visit);
}

bool IsLink(const Dir& folder) { return IsLinkAt(folder.FullPath()); }
bool IsLink(const File& file) { return IsLinkAt(file.FullPath()); }

void DeleteTree(const Dir& folder) {
  std::error_code error;
  fs::remove_all(ToNative(folder.FullPath()), error);
  if (!error) return;
  TracePresetDetail("Keeping preset folder: " + ShownPath(folder.FullPath()) + ": " +
                    error.message());
}

void DeleteIfEmpty(const Dir& folder) {
  std::error_code error;
  if (!fs::is_empty(ToNative(folder.FullPath()), error) || error) return;
  Attempt("Keeping preset folder", [&folder] { folder.Delete(); });
}

void DeleteModeFolder(const Dir& folder) {
  DeleteIfEmpty(folder);
  DeleteIfEmpty(folder.Parent());
}

bool CreateFolder(const Dir& folder) {
  return Attempt("Error creating preset folder", [&folder] { folder.Create(); });
}

bool CreateModeFolder(const Dir& folder) {
  if (!IsLink(folder.Parent()) && !IsLink(folder)) return CreateFolder(folder);
  TracePresetDetail("Error creating preset folder: " + ShownPath(folder.FullPath()) +
                    ": a link stands there");
  return false;
}

}  // namespace orvel
