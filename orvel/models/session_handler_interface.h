#pragma once

#include <vector>

#include <boost/signals2/connection.hpp>
#include <boost/signals2/signal.hpp>

#include "orvel/core/export.h"
#include "orvel/core/first_exception.h"
#include "orvel/core/ref_counted.h"
#include "orvel/definitions/section_registry.h"
#include "orvel/models/mix_type_clip_model_interface.h"

namespace orvel {

struct ConfigPresetData;
template <typename T>
struct Preset;

/// The host's session: which clips are selected, whether there is a session to work in, and the
/// configuration presets that its document carries. A host without documents leaves the last three
/// operations as they are.
class ORVEL_EXPORT SessionHandlerInterface : public virtual RefCountedObject {
 public:
  /// See `RegisterForClipSelectionChanges`.
  using SelectionSignal =
      boost::signals2::signal<void(const MixTypeClipModels& clips), CallEverySlot>;

  /// See `RegisterForSessionChanges`.
  using SessionSignal = boost::signals2::signal<void(bool enabled), CallEverySlot>;

  /// See `RegisterForDocumentChanges`.
  using DocumentSignal = boost::signals2::signal<void(bool changed, bool closing), CallEverySlot>;

  /// The slot receives the newly selected clips.
  virtual boost::signals2::connection RegisterForClipSelectionChanges(
      const SelectionSignal::slot_type& slot) = 0;

  /// The slot receives whether the session can be worked in now.
  virtual boost::signals2::connection RegisterForSessionChanges(
      const SessionSignal::slot_type& slot) = 0;

  /// The clips that are selected now, in the order of the session.
  virtual MixTypeClipModels GetSelectedMixTypeClipModels() = 0;

  /// Whether the session can be worked in now.
  virtual bool IsSessionEnabled() = 0;

  /// The slot receives (true, false) after a document was opened or replaced, and (..., true)
  /// before one is closed, when nothing can call that off any more.
  virtual boost::signals2::connection RegisterForDocumentChanges(
      const DocumentSignal::slot_type& /*slot*/) {
    return {};
  }

  /// Reads the configuration presets that the current document carries, under
  /// `kSessionPropertyKey_Configurations`; false when there is no document. One that carries none
  /// gives true and an empty list.
  virtual bool GetConfigurationPresets(std::vector<Preset<ConfigPresetData>>& /*presets*/) {
    return false;
  }

  /// Replaces them; called whenever a mode's current configuration has changed, so that a document
  /// that is saved holds what it was worked on with. False when there is no document.
  virtual bool SetConfigurationPresets(const std::vector<Preset<ConfigPresetData>>& /*presets*/) {
    return false;
  }
};

}  // namespace orvel
