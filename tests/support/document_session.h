#pragma once

#include <functional>
#include <utility>
#include <vector>

#include "orvel/presets/config_preset_data.h"
#include "orvel/presets/preset.h"
#include "tests/support/fake_session.h"

namespace orvel::test {

/// A session whose document holds configuration presets.
class DocumentSession : public FakeSession {
 public:
  boost::signals2::connection RegisterForDocumentChanges(
      const DocumentSignal::slot_type& slot) override {
    return documentChanged.connect(slot);
  }
  bool GetConfigurationPresets(std::vector<Preset<ConfigPresetData>>& presets) override {
    if (onRead) onRead();
    if (isReadable) presets = document;
    return isReadable;
  }
  bool SetConfigurationPresets(const std::vector<Preset<ConfigPresetData>>& presets) override {
    const auto store = std::exchange(onStore, {});
    if (store) store();
    if (!isWritable) return false;
    document = presets;
    ++stores;
    documentChanged(true, false);  // the host tells of every change, also of the library's own
    return true;
  }

  void Open(const std::vector<Preset<ConfigPresetData>>& presets) {
    document = presets;
    documentChanged(true, false);
  }

  DocumentSignal documentChanged;
  std::vector<Preset<ConfigPresetData>> document;
  std::function<void()> onRead;
  std::function<void()> onStore;  // once, before the presets are kept
  int stores = 0;
  bool isReadable = true;
  bool isWritable = true;
};

}  // namespace orvel::test
