#include "host/session/host.h"

#include "host/effects/effect_factory.h"
#include "host/session/clip_section_model.h"
#include "host/session/translations.h"

namespace orvelhost {

Host::Host() {
  LoadTranslations(folder_ / "translations.json");
  InstallEffects();
  InstallSectionModels();
  orvel::Initialize(session_, undoStack_, orvel::GetDefaultAdjustmentsModeDescriptors());
}

Host::~Host() {
  orvel::Terminate();
  orvel::SetOrvelActionExecutor(nullptr);
  UninstallSectionModels();
  UninstallEffects();
  orvel::Localizer::Get().SetLookup({});
  orvel::Dir::SetPrefDir(orvel::Dir());
}

}  // namespace orvelhost
