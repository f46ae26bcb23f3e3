#include "orvel/presets/preset_folder.h"

#include <cstddef>
#include <filesystem>
#include <system_error>

#include "orvel/core/file_error.h"
#include "orvel/core/native_path.h"
#include "orvel/core/text.h"
#include "orvel/presets/preset_trace.h"

namespace orvel {
namespace fs = std::filesystem;
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

}  // namespace

bool IsFolderName(const std::string& modeID) {
  constexpr std::size_t kMaxLength = 200;
  const std::u16string wide = UTF8to16(modeID);
  return modeID.size() <= kMaxLength && modeID.find('\\') == std::string::npos &&
         IsPathElement(wide) && UTF16to8(wide) == modeID;
}

bool ForEachSubfolder(const Dir& folder, const boost::function<void(const Dir& folder)>& visit) {
  Dir::SubdirIterator at;
  const auto list = [&] { at = folder.BeginSubdirs({}, {}, Dir::Links::kSkip); };
  if (!Attempt("Skipping preset folder", list)) return false;
  for (; at != folder.EndSubdirs(); ++at) visit(*at);
  return true;
}

bool ForEachFile(const Dir& folder, const Dir::Filter& filter,
                 const boost::function<void(const File& file)>& visit) {
  Dir::FileIterator at;
  const auto list = [&] { at = folder.BeginFiles(filter, {}, Dir::Links::kSkip); };
  if (!Attempt("Skipping preset folder", list)) return false;
  for (; at != folder.EndFiles(); ++at) visit(*at);
  return true;
}

bool IsLink(const Dir& folder) { return IsLinkAt(folder.FullPath()); }
bool IsLink(const File& file) { return IsLinkAt(file.FullPath()); }
bool IsBehindLink(const Dir& modeFolder) {
  return IsLink(modeFolder.Parent()) || IsLink(modeFolder);
}

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
  if (!IsBehindLink(folder)) return CreateFolder(folder);
  TracePresetDetail("Error creating preset folder: " + ShownPath(folder.FullPath()) +
                    ": a link stands there");
  return false;
}

}  // namespace orvel
