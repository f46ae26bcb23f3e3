#pragma once

#include <string>

#include "orvel/actions/action_executor.h"
#include "orvel/configuration/configuration_manager.h"
#include "orvel/definitions/lifecycle.h"
#include "orvel/models/adjustments_modes_json.h"
#include "tests/support/document_session.h"
#include "tests/support/preset_store.h"

namespace orvel::test {

/// The library at work with a preset folder and a document of the test's own.
class ConfiguredStore : public PresetStore {
 protected:
  ConfiguredStore() { Start(); }
  ~ConfiguredStore() override { Terminate(); }

  void Start() { Initialize(session_, nullptr, GetDefaultAdjustmentsModeDescriptors()); }

  static ConfigurationManager& Manager() { return *ConfigurationManager::Get(); }
  static PresetsCache& Store() { return *Manager().GetPresetsCache(); }
  static ConfigPresetsHandler& Handler(const std::string& mode) {
    return *Manager().GetConfigPresetHandler(mode);
  }
  static PropList Gain(float value) {
    PropList list;
    list.SetValue("MaxGain", value);
    return list;
  }

  boost::intrusive_ptr<DocumentSession> session_{new DocumentSession};
};

}  // namespace orvel::test
