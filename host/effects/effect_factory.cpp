#include "host/effects/effect_factory.h"

#include "host/effects/effect_catalogue.h"
#include "orvel/orvel.h"

namespace orvelhost {
namespace {

class Effect : public teskaudiofilterhost::AudioFilter {
 public:
  boost::intrusive_ptr<teskaudiofilterhost::PresetList> GetPresetList() const override {
    return nullptr;
  }
};

}  // namespace

void InstallEffects() {
  teskaudiofilterhost::utility::RegisterAudioFilterFactory([](const std::u16string& componentId) {
    return boost::intrusive_ptr<teskaudiofilterhost::AudioFilter>(
        FindEffect(componentId) == nullptr ? nullptr : new Effect);
  });
}

void UninstallEffects() { teskaudiofilterhost::utility::RegisterAudioFilterFactory({}); }

}  // namespace orvelhost
