#include "host/session/host.h"

#include "host/effects/effect_factory.h"
#include "host/session/clip_section_model.h"
#include "host/session/translations.h"

namespace orvelhost {

Host::Host() {
  LoadTranslations(folder_ / "translations.json");
  InstallEffects();
  InstallSectionModels();
  orvel::Initialize(session_, nullptr, orvel::GetDefaultAdjustmentsModeDescriptors());
}

Host::~Host() {
  orvel::Terminate();
  UninstallSectionModels();
  UninstallEffects();
  orvel::Localizer::Get().SetLookup({});
  orvel::Dir::SetPrefDir(orvel::Dir());
}

}  // namespace orvelhost
