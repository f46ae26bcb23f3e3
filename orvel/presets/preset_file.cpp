#include "orvel/presets/preset_file.h"

#include <exception>
#include <filesystem>
#include <system_error>
#include <type_traits>

#include "orvel/core/byte_stream.h"
#include "orvel/core/file_utils.h"
#include "orvel/core/json.h"
#include "orvel/core/native_path.h"
#include "orvel/core/safe_save.h"
#include "orvel/core/text.h"
#include "orvel/presets/preset_json.h"
#include "orvel/presets/preset_trace.h"

namespace orvel {
namespace fs = std::filesystem;
using teskcore::filesupport::ToNative;

bool IsPresetFileName(const std::u16string& name) {
  return name != kPresetFileExtension && name.ends_with(kPresetFileExtension) &&
         name != kConfigFileName;
}

namespace {

/// That of the records whose payload reads as `T`, and is none.
template <typename T>
const Guid& OtherType() {
  return std::is_same_v<T, UserPresetData> ? ConfigPresetData::kType : UserPresetData::kType;
}

}  // namespace

template <typename T>
bool ReadPresetFile(const File& file, Preset<T>& preset) {
  std::string cause = "holds no preset of this kind, or one without a guid";
  try {
    Preset<T> read;
    ReadPreset(ReadWholeFile(file), read);
    if (read.Type != OtherType<T>() && !read.Guid.IsNull()) {
      preset = std::move(read);
      return true;
    }
  } catch (const teskcore::serialization::BadCast&) {
    cause = "a member is of the wrong kind";
  } catch (const std::exception& error) {
    cause = error.what();
  }
  TracePresetDetail("Skipping preset file: " + ShownPath(file.FullPath()) + ": " + cause);
  return false;
}

template <typename T>
bool WritePresetFile(const File& file, const Preset<T>& preset) {
  std::string cause = "a value is not finite";
  try {
    std::string text;
    if (WritePreset(preset, text)) {
      SafeSave save(file, SafeSave::Links::kReplace);
      FileUtils::SimpleWriteStringToFile(save.GetTempFile().FullPath(), text);
      save.Commit();
      return true;
    }
  } catch (const std::exception& error) {
    cause = error.what();
  }
  TracePresets("Error writing preset file: " + ShownPath(file.FullPath()));
  TracePresetDetail(cause);
  return false;
}

template bool ReadPresetFile(const File&, Preset<UserPresetData>&);
template bool ReadPresetFile(const File&, Preset<ConfigPresetData>&);
template bool WritePresetFile(const File&, const Preset<UserPresetData>&);
template bool WritePresetFile(const File&, const Preset<ConfigPresetData>&);

bool MovePresetPath(const std::u16string& from, const std::u16string& to) {
  std::error_code error;
  fs::rename(ToNative(from), ToNative(to), error);
  if (!error) return true;
  TracePresetDetail("Error moving presets: " + ShownPath(from) + ": " + error.message());
  return false;
}

bool DeletePresetFile(const File& file) {
  try {
    file.Delete();
  } catch (const std::exception& error) {
    // Only what is known to be gone is gone: in a folder that cannot be searched nothing shows.
    std::error_code unknown;
    const auto status = fs::symlink_status(ToNative(file.FullPath()), unknown);
    if (status.type() == fs::file_type::not_found || fs::is_directory(status)) return true;
    TracePresetDetail("Error deleting preset file: " + ShownPath(file.FullPath()) + ": " +
                      error.what());
    return false;
  }
  return true;
}

bool CanNameAPreset(const std::string& name) {
  const std::u16string wide = UTF8to16(name);
  const char* cause = nullptr;
  if (name.empty()) {
    cause = "a preset needs a name";
  } else if (UTF16to8(wide) != name) {
    cause = "the name is not valid UTF-8";
  } else if (FileUtils::NormalizePathForSaving(wide) + kPresetFileExtension == kConfigFileName) {
    cause = "the name is that of the configuration's file";
  } else {
    return true;
  }
  TracePresetDetail("Refusing preset name \"" + name + "\": " + cause);
  return false;
}

}  // namespace orvel
