#include "orvel/sections/preset_table.h"

#include <map>
#include <utility>

namespace orvel {

PresetTable ReadPresetTable(const PropList& configuration, const std::string& key,
                            unsigned firstLeftOut, unsigned lastLeftOut) {
  PropList presets;
  configuration.GetValue(key, presets);
  PresetTable table;
  std::map<unsigned, ParameterMapping> mappings;
  for (const auto& [name, held] : presets) {
    const auto* values = std::get_if<std::vector<float>>(&held);
    if (values == nullptr) continue;
    ++table.count;
    for (unsigned index = 0; index < values->size(); ++index) {
      if (index >= firstLeftOut && index <= lastLeftOut) continue;
      auto mapping = mappings.try_emplace(index, index, 1.0f).first;
      mapping->second.AddKeypoint((*values)[index]);
    }
  }
  for (auto& [index, mapping] : mappings) table.mappings.push_back(std::move(mapping));
  return table;
}

}  // namespace orvel
