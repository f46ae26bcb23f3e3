#pragma once

#include <string>

#include "orvel/core/file.h"
#include "orvel/presets/config_preset_data.h"
#include "orvel/presets/preset.h"
#include "orvel/presets/user_preset_data.h"

namespace orvel {

/// The extension of preset files, and the name of the file that holds a folder's configuration
/// preset.
inline constexpr char16_t kPresetFileExtension[] = u".orvel";
inline constexpr char16_t kConfigFileName[] = u"(Config).orvel";

/// Whether a file of this name holds a user preset.
bool IsPresetFileName(const std::u16string& name);

/// Reads one preset. False, traced with the path and the cause, when the file cannot be read, holds
/// no preset of this kind or one without a guid; `preset` is then as it was.
template <typename T>
bool ReadPresetFile(const File& file, Preset<T>& preset);

/// Writes one preset in the place of the file, or of a link there, whole or not at all. False,
/// traced with the path and the cause, when it cannot; what stands there is then as it was.
template <typename T>
bool WritePresetFile(const File& file, const Preset<T>& preset);

/// Moves a file, replacing what stands at `to`, or a folder, in one step. False, traced, when it
/// cannot; it is then where it was.
bool MovePresetPath(const std::u16string& from, const std::u16string& to);

/// Deletes a file, of a link the link. True when no file stands there any more; traced otherwise.
bool DeletePresetFile(const File& file);

/// Whether a file can be called after a preset's name. False, with the cause traced, for an empty
/// name, one that is not UTF-8, and that of the configuration's file.
bool CanNameAPreset(const std::string& name);

}  // namespace orvel
