#include "host/session/session.h"

namespace orvelhost {

void Session::Select(const orvel::MixTypeClipModels& clips) {
  selected_ = clips;
  selectionChanged_(selected_);
}

boost::signals2::connection Session::RegisterForClipSelectionChanges(
    const SelectionSignal::slot_type& slot) {
  return selectionChanged_.connect(slot);
}

boost::signals2::connection Session::RegisterForSessionChanges(
    const SessionSignal::slot_type& slot) {
  return sessionChanged_.connect(slot);
}

}  // namespace orvelhost
