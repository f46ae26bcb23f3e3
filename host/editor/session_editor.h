#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "host/editor/control_editor.h"
#include "host/editor/preset_editor.h"
#include "host/editor/selected_clips.h"
#include "host/editor/template_editor.h"

namespace orvelhost {

/// What a person does with a session, over the library's model of the selected clips. Each change
/// of the clips' controls, modes, presets, template and of its settings is a step that can be
/// undone. What cannot be done raises EditError or PresetError, and leaves all as it was. Main
/// thread only.
class SessionEditor {
 public:
  /// One at a time; the host must outlive it.
  explicit SessionEditor(const Host& host) : clips_(host) {}

  Session& GetSession() const { return clips_.GetSession(); }
  UndoStack& GetUndoStack() const { return clips_.GetUndoStack(); }

  const ControlEditor& Controls() const { return controls_; }
  const PresetEditor& Presets() const { return presets_; }
  const TemplateEditor& Templates() const { return templates_; }

  /// Adds clips of these files and selects them.
  void AddClips(const std::vector<std::filesystem::path>& files);
  /// Clips are named by their numbers, from 1.
  void Select(const std::vector<std::size_t>& numbers);
  /// The numbers of all clips, and of the selected ones.
  std::vector<std::size_t> GetNumbers() const;
  std::vector<std::size_t> GetSelection() const;

  /// Gives the selected clips a mode and its default preset; "none" takes their mode away.
  void SetMode(const std::string& modeID);

  /// Return the name of the step that was undone or redone.
  std::string Undo();
  std::string Redo();

  void Save(const std::filesystem::path& file);
  void Open(const std::filesystem::path& file);

 private:
  SelectedClips clips_;
  ControlEditor controls_{clips_};
  PresetEditor presets_{clips_};
  TemplateEditor templates_{clips_};
};

}  // namespace orvelhost
