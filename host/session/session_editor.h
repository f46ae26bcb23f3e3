#pragma once

#include <cstddef>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include <boost/signals2/connection.hpp>
#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "host/catalogue/preset_store.h"
#include "host/session/host.h"
#include "orvel/orvel.h"

namespace orvelhost {

/// Why something cannot be done in the session, in one line for a person.
class EditError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// What a panel shows of one parameter of the selected clips; physical.
struct ParameterState {
  std::string name;    ///< "volume.Volume"
  double value = 0.0;  ///< of the first clip
  bool mixed = false;  ///< the clips hold different values
  double least = 0.0;
  double greatest = 0.0;
  bool enabled = false;  ///< its section and its control are switched on
  double min = 0.0;
  double max = 0.0;
};

/// What a person does with a session, over the library's model of the selected clips. Each change
/// of the clips' controls, modes, presets and of a template's settings is a step that can be
/// undone. What cannot be done raises EditError or PresetError, and leaves all as it was. Main
/// thread only.
class SessionEditor {
 public:
  /// One at a time; the host must outlive it.
  explicit SessionEditor(const Host& host);

  Session& GetSession() const { return *host_.GetSession(); }
  const UndoStack& GetUndoStack() const { return *host_.GetUndoStack(); }

  // ---- Clips, which are named by their numbers, from 1.

  /// Adds clips of these files and selects them.
  void AddClips(const std::vector<std::filesystem::path>& files);
  void Select(const std::vector<std::size_t>& numbers);
  void SelectAll();
  /// The numbers of the selected clips.
  std::vector<std::size_t> GetSelection() const;

  // ---- Modes and presets.

  /// The mode that the selected clips have in common.
  std::string GetMode() const;
  /// Gives the selected clips a mode and its default preset; "none" takes their mode away.
  void SetMode(const std::string& modeID);

  /// The presets of the mode under its template; by name or guid; what the clips show of theirs:
  /// its name, with " *" when it was edited, "(Custom)", or "(mixed)".
  std::vector<orvel::UserPreset> GetPresets() const;
  orvel::UserPreset FindPreset(const std::string& name) const;
  std::string GetPresetState() const;

  void ApplyPreset(const std::string& name);
  /// Saves the clips' values, and gives the clips the preset. The preset that they have is
  /// overwritten under its own name.
  orvel::UserPreset SavePreset(const std::string& name);
  orvel::UserPreset RemovePreset(const std::string& name);

  // ---- Templates.

  std::vector<orvel::ConfigPreset> GetTemplates() const;
  /// The current one's name; with " *" when it was configured, or "(Custom)".
  std::string GetTemplateState() const;
  void SelectTemplate(const std::string& name);
  /// Saves the settings as a template and selects it; the current one, unless it comes with the
  /// library, is overwritten under its own name.
  void SaveTemplate(const std::string& name);
  /// Sets a number in the settings of a section, such as "volume", "MaxGain", "3". A section's
  /// settings that are no numbers, or are not there, cannot be set.
  void Configure(const std::string& section, const std::string& key, const std::string& value);
  /// Drops what was configured and not saved as a template.
  void Revert();

  // ---- Controls.

  /// Those of the section, such as "volume", or of all with an empty name.
  std::vector<ParameterState> GetParameters(const std::string& section) const;
  ParameterState GetParameter(const std::string& name) const;
  void Set(const std::string& name, double value);
  /// Through all of the values, as one step.
  void Drag(const std::string& name, const std::vector<double>& values);
  /// Moves each clip's own value.
  void Offset(const std::string& name, double delta);

  // ---- Steps and the document.

  /// Return the name of the step that was undone or redone.
  std::string Undo();
  std::string Redo();

  void Save(const std::filesystem::path& file);
  void Open(const std::filesystem::path& file);

 private:
  struct Parameter;

  Parameter FindParameter(const std::string& name) const;
  void Execute(const boost::intrusive_ptr<orvel::Action>& action);
  orvel::OrvelModel::SectionModels GetSections() const;
  boost::intrusive_ptr<orvel::ConfigPresetsHandler> GetTemplateHandler() const;
  void RequireSelection() const;
  void Settle();

  const Host& host_;
  PresetStore store_;
  boost::intrusive_ptr<orvel::OrvelModel> model_;
  boost::signals2::scoped_connection configured_;
};

}  // namespace orvelhost
