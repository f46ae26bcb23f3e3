#pragma once

#include <string>
#include <vector>

#include "host/editor/selected_clips.h"

namespace orvelhost {

/// The templates of the selected clips' mode, and the settings of its sections. What cannot be done
/// raises EditError or PresetError, and leaves all as it was.
class TemplateEditor {
 public:
  explicit TemplateEditor(const SelectedClips& clips) : clips_(clips) {}

  std::vector<orvel::ConfigPreset> GetAll() const;
  /// The current one's name; with " *" when it was configured, or "(Custom)".
  std::string GetState() const;
  /// As one step; settings that were changed and not saved come back when it is undone.
  void Select(const std::string& name) const;
  /// Saves the settings as a template, which stays, and selects it as one step; the current one,
  /// unless it comes with the library, is overwritten under its own name.
  void Save(const std::string& name) const;
  /// Sets a number in the settings of a section, such as "volume", "MaxGain", "3", as one step. A
  /// section's settings that are no numbers, or are not there, cannot be set.
  void Configure(const std::string& section, const std::string& key,
                 const std::string& value) const;
  /// Drops what was configured and not saved as a template, as one step.
  void Revert() const;

 private:
  boost::intrusive_ptr<orvel::ConfigPresetsHandler> GetHandler() const;

  const SelectedClips& clips_;
};

}  // namespace orvelhost
