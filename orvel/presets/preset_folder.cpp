#include "orvel/presets/preset_folder.h"

#include <cstddef>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "orvel/core/file_error.h"
#include "orvel/core/native_path.h"
#include "orvel/core/text.h"
#include "orvel/presets/preset_file.h"

namespace orvel {
namespace fs = std::filesystem;
using teskcore::filesupport::ToNative;

bool IsFolderName(const std::string& modeID) {
  constexpr std::string_view kUnsafe("/\\\0", 3);
  constexpr std::size_t kMaxLength = 200;
  return !modeID.empty() && modeID.size() <= kMaxLength && modeID != "." && modeID != ".." &&
         modeID.find_first_of(kUnsafe) == std::string::npos && UTF16to8(UTF8to16(modeID)) == modeID;
}

void ForEachSubfolder(const Dir& folder, const boost::function<void(const Dir& folder)>& visit) {
  try {
    for (auto at = folder.BeginSubdirs(); at != folder.EndSubdirs(); ++at) visit(*at);
  } catch (const dir_exception& error) {
    TracePresetDetail(std::string("Skipping preset folder: ") + error.what());
  }
}

bool IsLink(const Dir& folder) {
  std::error_code error;
  return fs::is_symlink(ToNative(folder.FullPath()), error);
}

bool DeleteFolder(const Dir& folder) {
  try {
    folder.Delete();
    return true;
  } catch (const dir_exception& error) {
    TracePresetDetail(std::string("Keeping preset folder: ") + error.what());
    return false;
  }
}

void DeleteIfEmpty(const Dir& folder) {
  std::error_code error;
  if (fs::is_empty(ToNative(folder.FullPath()), error) && !error) DeleteFolder(folder);
}

void DeleteModeFolder(const Dir& folder) {
  DeleteIfEmpty(folder);
  DeleteIfEmpty(folder.Parent());
}

bool MoveFolder(const Dir& from, const Dir& to) {
  std::error_code error;
  fs::rename(ToNative(from.FullPath()), ToNative(to.FullPath()), error);
  if (!error) return true;
  TracePresetDetail("Error moving preset folder: " + ShownPath(from.FullPath()) + ": " +
                    error.message());
  return false;
}

bool CreateFolder(const Dir& folder) {
  try {
    folder.Create();
    return true;
  } catch (const dir_exception& error) {
    TracePresetDetail(std::string("Error creating preset folder: ") + error.what());
    return false;
  }
}

}  // namespace orvel
