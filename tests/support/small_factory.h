#pragma once

#include <string>

#include "orvel/core/module_resources.h"
#include "orvel/presets/preset_json.h"
#include "tests/support/preset_store.h"

namespace orvel::test {

/// A module with one factory preset, the template `kDialogTemplate`: for stores that are made or
/// read hundreds of times.
inline ModuleHandle SmallFactory() {
  static const std::string users = "[]";
  static const std::string configs = [] {
    auto preset = MakeConfigPreset("$$$/Factory=Factory");
    preset.Guid = kDialogTemplate;
    std::string text;
    WritePresets({preset}, text);
    return text;
  }();
  const auto offer = [](const std::u16string& name, const std::string& text) {
    teskcore::filesupport::RegisterModuleResource(&configs, name, u"json", text.data(),
                                                  text.size());
  };
  offer(u"OrvelConfigPresets", configs);
  offer(u"OrvelPresets", users);
  return &configs;
}

}  // namespace orvel::test
