#pragma once

#include <string>
#include <vector>

#include "host/editor/selected_clips.h"

namespace orvelhost {

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

/// The controls of the selected clips' sections. Each change is one step. What cannot be done
/// raises EditError, and leaves all as it was.
class ControlEditor {
 public:
  explicit ControlEditor(const SelectedClips& clips) : clips_(clips) {}

  /// The parameters of the section, such as "volume", or of all with an empty name.
  std::vector<ParameterState> GetAll(const std::string& section) const;
  ParameterState Get(const std::string& name) const;

  void Set(const std::string& name, double value) const { Drag(name, {value}); }
  /// Through all of the values, as one step.
  void Drag(const std::string& name, const std::vector<double>& values) const;
  /// Moves each clip's own value.
  void Offset(const std::string& name, double delta) const;

 private:
  struct Parameter;

  Parameter Find(const std::string& name) const;

  const SelectedClips& clips_;
};

/// A number as people read it, of six digits.
std::string ShownNumber(double value);

}  // namespace orvelhost
