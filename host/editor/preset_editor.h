#pragma once

#include <string>
#include <vector>

#include "host/editor/selected_clips.h"

namespace orvelhost {

/// The presets of the selected clips' mode under its current template. What cannot be done raises
/// EditError or PresetError, and leaves the clips as they were.
class PresetEditor {
 public:
  explicit PresetEditor(const SelectedClips& clips) : clips_(clips) {}

  std::vector<orvel::UserPreset> GetAll() const;
  /// By name or guid.
  orvel::UserPreset Find(const std::string& name, Capitals capitals = Capitals::kAny) const;
  /// What the clips show of theirs: its name, with " *" when it was edited, "(Custom)", or
  /// "(mixed)".
  std::string GetState() const;

  /// As one step.
  void Apply(const std::string& name) const;
  /// Saves the clips' values, and gives the clips the preset, as one step. The preset that they
  /// have is overwritten under its own name.
  orvel::UserPreset Save(const std::string& name) const;
  /// By the name as it is written, or the guid.
  orvel::UserPreset Remove(const std::string& name) const;

 private:
  const SelectedClips& clips_;
};

}  // namespace orvelhost
