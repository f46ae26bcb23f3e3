#include "orvel/core/audio_filter.h"

namespace teskaudiofilterhost {
namespace {

AudioFilterFactory& Factory() {
  static auto& factory = *new AudioFilterFactory;  // never destroyed
  return factory;
}

}  // namespace

void PresetList::AddPreset(const std::u16string& name, const std::list<float>& params) {
  presets_[name] = new PresetData(params);
}

void PresetList::GetPresetNames(std::set<std::u16string>& names) const {
  names.clear();
  for (const auto& [name, preset] : presets_) names.insert(name);
}

boost::intrusive_ptr<PresetData> PresetList::GetPreset(const std::u16string& name) const {
  const auto found = presets_.find(name);
  return found == presets_.end() ? nullptr : found->second;
}

namespace utility {

boost::intrusive_ptr<AudioFilter> CreateAudioFilter(const std::u16string& componentID) {
  const AudioFilterFactory factory = Factory();  // it may replace itself
  return factory ? factory(componentID) : nullptr;
}

void RegisterAudioFilterFactory(const AudioFilterFactory& factory) { Factory() = factory; }

}  // namespace utility
}  // namespace teskaudiofilterhost
