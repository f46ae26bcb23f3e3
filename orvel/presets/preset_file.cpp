#include "orvel/presets/preset_file.h"

#include <exception>
#include <filesystem>
#include <system_error>

#include "orvel/core/byte_stream.h"
#include "orvel/core/file_utils.h"
#include "orvel/core/native_path.h"
#include "orvel/core/safe_save.h"
#include "orvel/core/temp_name.h"
#include "orvel/core/text.h"
#include "orvel/core/trace.h"
#include "orvel/presets/preset_json.h"

namespace orvel {
namespace fs = std::filesystem;
using teskcore::filesupport::ToNative;

namespace {

constexpr int kTraceLevel = 2;
constexpr int kDetailTraceLevel = 3;

template <typename T>
bool Read(const File& file, Preset<T>& preset) {
  std::string cause = "holds no preset of this kind, or one without a guid";
  try {
    Preset<T> read;
    ReadPreset(ReadWholeFile(file), read);
    const bool isOfThisKind = read.Type.IsNull() || read.Type == T::kType;
    if (isOfThisKind && !read.Guid.IsNull()) {
      preset = std::move(read);
      return true;
    }
  } catch (const std::exception& error) {
    cause = error.what();
  }
  TracePresetDetail("Skipping preset file: " + ShownPath(file.FullPath()) + ": " + cause);
  return false;
}

template <typename T>
bool Write(const File& file, const Preset<T>& preset) {
  std::string cause = "a value is not finite";
  try {
    std::string text;
    if (WritePreset(preset, text)) {
      SafeSave save(file);
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

template <typename T>
bool Repair(const File& file, const Preset<T>& preset) {
  std::error_code error;
  if (!fs::is_symlink(ToNative(file.FullPath()), error)) return Write(file, preset);
  const File own(file.Parent(), teskcore::filesupport::MakeTempName());
  if (!Write(own, preset)) return false;
  if (MovePresetFile(own, file)) return true;
  DeletePresetFile(own);
  return false;
}

}  // namespace

void TracePresets(const std::string& text) {
  if (TraceEnabled("app.Presets", kTraceLevel, false)) Trace(text);
}

void TracePresetDetail(const std::string& text) {
  if (TraceEnabled("app.Presets", kDetailTraceLevel, false)) Trace(text);
}

std::string ShownPath(const std::u16string& path) { return UTF16to8(path); }

bool ReadPresetFile(const File& file, Preset<UserPresetData>& preset) { return Read(file, preset); }

bool ReadPresetFile(const File& file, Preset<ConfigPresetData>& preset) {
  return Read(file, preset);
}

bool WritePresetFile(const File& file, const Preset<UserPresetData>& preset) {
  return Write(file, preset);
}

bool WritePresetFile(const File& file, const Preset<ConfigPresetData>& preset) {
  return Write(file, preset);
}

bool RepairPresetFile(const File& file, const Preset<UserPresetData>& preset) {
  return Repair(file, preset);
}

bool RepairPresetFile(const File& file, const Preset<ConfigPresetData>& preset) {
  return Repair(file, preset);
}

bool MovePresetFile(const File& from, const File& to) {
  std::error_code error;
  fs::rename(ToNative(from.FullPath()), ToNative(to.FullPath()), error);
  if (!error) return true;
  TracePresetDetail("Error moving preset file: " + ShownPath(from.FullPath()) + ": " +
                    error.message());
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

bool MakePresetFileTitle(const std::string& name, std::u16string& title) {
  const std::u16string wide = UTF8to16(name);
  const char* cause = nullptr;
  if (name.empty()) {
    cause = "a preset needs a name";
  } else if (UTF16to8(wide) != name) {
    cause = "the name is not valid UTF-8";
  } else {
    title = FileUtils::NormalizePathForSaving(wide);
    if (title + kPresetFileExtension != kConfigFileName) return true;
    cause = "the name is that of the configuration's file";
  }
  TracePresetDetail("Refusing preset name \"" + name + "\": " + cause);
  return false;
}

}  // namespace orvel
