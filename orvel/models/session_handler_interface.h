#pragma once

#include <boost/signals2/connection.hpp>
#include <boost/signals2/signal.hpp>

#include "orvel/core/export.h"
#include "orvel/core/ref_counted.h"
#include "orvel/definitions/section_registry.h"
#include "orvel/models/mix_type_clip_model_interface.h"

namespace orvel {

/// The host's session: which clips are selected, and whether there is a session to work in.
class ORVEL_EXPORT SessionHandlerInterface : public virtual RefCountedObject {
 public:
  using SelectionSignal = boost::signals2::signal<void(const MixTypeClipModels& clips)>;
  using SessionSignal = boost::signals2::signal<void(bool enabled)>;

  /// The slot receives the newly selected clips.
  virtual boost::signals2::connection RegisterForClipSelectionChanges(
      const SelectionSignal::slot_type& slot) = 0;

  /// The slot receives whether the session can be worked in now.
  virtual boost::signals2::connection RegisterForSessionChanges(
      const SessionSignal::slot_type& slot) = 0;

  virtual MixTypeClipModels GetSelectedMixTypeClipModels() = 0;
  virtual bool IsSessionEnabled() = 0;
};

}  // namespace orvel
