#pragma once

#include <vector>

#include "host/session/clip.h"
#include "orvel/orvel.h"

namespace orvelhost {

/// A section of a clip as its behaviour sees it. Ids must be those of the section's parameters.
class SectionState {
 public:
  SectionState(const orvel::SectionDefinition& definition, std::vector<float>& values, Clip& clip)
      : definition_(definition), values_(values), clip_(clip) {}

  Clip& GetClip() const { return clip_; }
  const orvel::SectionDefinition& Definition() const { return definition_; }

  /// Whether the section and this switch of it are on; a switch counts as on from 0.5 up.
  bool IsOn(int switchID) const;
  float Normalized(int paramID) const { return values_[static_cast<std::size_t>(paramID)]; }
  double Physical(int paramID) const;
  /// Sets a read-back, limited to its range.
  void Show(int paramID, double physical);

 private:
  const orvel::SectionDefinition& definition_;
  std::vector<float>& values_;
  Clip& clip_;
};

/// What a section has to know of its clip.
enum class MeasurementNeed { kNothing, kSound, kSoundAndRemix };

/// What a section does besides driving effects through its controls' mappings.
struct SectionBehaviour {
  const char* modelID;

  /// What the section, as it is set, has to know. May be null.
  MeasurementNeed (*needs)(const SectionState& state);

  /// Brings the clip in line with the section's values, and the section's read-backs in line with
  /// the clip. Called after the mappings were applied. May be null.
  void (*apply)(SectionState& state);
};

/// Null for a section that only drives effects.
const SectionBehaviour* FindBehaviour(const std::string& modelID);

}  // namespace orvelhost
