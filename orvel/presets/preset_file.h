#pragma once

#include <string>

#include "orvel/core/dir.h"
#include "orvel/core/file.h"
#include "orvel/presets/config_preset_data.h"
#include "orvel/presets/preset.h"
#include "orvel/presets/user_preset_data.h"

namespace orvel {

/// The extension of preset files, and the name of the file that holds a folder's configuration
/// preset.
inline constexpr char16_t kPresetFileExtension[] = u".orvel";
inline constexpr char16_t kConfigFileName[] = u"(Config).orvel";

/// Write a line on the channel "app.Presets": that a preset became a copy or could not be written,
/// at level 2; why, and what was passed over, refused or left where it is, at level 3.
void TracePresets(const std::string& text);
void TracePresetDetail(const std::string& text);

/// A path as traces show it.
std::string ShownPath(const std::u16string& path);

/// Reads one preset. False, traced with the path and the cause, when the file cannot be read, holds
/// no preset of this kind or one without a guid; `preset` is then as it was.
bool ReadPresetFile(const File& file, Preset<UserPresetData>& preset);
bool ReadPresetFile(const File& file, Preset<ConfigPresetData>& preset);

/// Writes one preset in the place of the file, whole or not at all. False, traced with the path and
/// the cause, when it cannot; the file is then as it was.
bool WritePresetFile(const File& file, const Preset<UserPresetData>& preset);
bool WritePresetFile(const File& file, const Preset<ConfigPresetData>& preset);

/// Moves a file, replacing what stands at `to`, in one step. False, traced, when it cannot.
bool MovePresetFile(const File& from, const File& to);

/// Writes what a preset must be at its place. A link is replaced by a file of its own: what it
/// leads to may have its place elsewhere, and be read there, too.
bool RepairPresetFile(const File& file, const Preset<UserPresetData>& preset);
bool RepairPresetFile(const File& file, const Preset<ConfigPresetData>& preset);

/// Deletes a file, of a link the link. True when no file stands there any more; traced otherwise.
bool DeletePresetFile(const File& file);

/// The file name, without extension, of a preset's name. False, with the cause traced, for a name
/// that cannot be one: an empty one, one that is not UTF-8, or that of the configuration's file.
bool MakePresetFileTitle(const std::string& name, std::u16string& title);

}  // namespace orvel
