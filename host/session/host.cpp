#include "host/session/host.h"

#include "host/effects/effect_factory.h"
#include "host/session/clip_section_model.h"

namespace orvelhost {

Host::Host() {
  InstallEffects();
  InstallSectionModels();
  orvel::Initialize(session_, nullptr, orvel::GetDefaultAdjustmentsModeDescriptors());
}

Host::~Host() {
  orvel::Terminate();
  UninstallSectionModels();
  UninstallEffects();
}

}  // namespace orvelhost
