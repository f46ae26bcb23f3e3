#pragma once

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "host/session/clip.h"
#include "orvel/orvel.h"

namespace orvelhost {

/// The clips that are worked on, and which of them are selected. It can always be worked in.
class Session : public orvel::SessionHandlerInterface {
 public:
  /// Selects exactly these clips and tells so.
  void Select(const orvel::MixTypeClipModels& clips);

  boost::signals2::connection RegisterForClipSelectionChanges(
      const SelectionSignal::slot_type& slot) override;
  boost::signals2::connection RegisterForSessionChanges(
      const SessionSignal::slot_type& slot) override;
  orvel::MixTypeClipModels GetSelectedMixTypeClipModels() override { return selected_; }
  bool IsSessionEnabled() override { return true; }

 private:
  orvel::MixTypeClipModels selected_;
  SelectionSignal selectionChanged_;
  SessionSignal sessionChanged_;
};

}  // namespace orvelhost
