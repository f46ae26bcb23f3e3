#include "host/editor/selected_clips.h"

#include "host/catalogue/mode_catalogue.h"

namespace orvelhost {

SelectedClips::SelectedClips(const Host& host) : host_(host), store_(host) {
  orvel::factory::CreateOrvelModel(model_);
  // Sections are built from their settings, so with other settings they are others.
  configured_ = orvel::ConfigurationManager::Get()->RegisterModelConfigurationDataChangedCallback(
      [this](const std::string&, const std::string&, const orvel::PropList&) {
        model_->Refresh();
      });
}

void SelectedClips::Require() const {
  if (GetSession().GetSelectedMixTypeClipModels().empty()) {
    throw EditError("no clip is selected");
  }
}

std::string SelectedClips::GetMode() const {
  Require();
  std::string mode;
  if (orvel::modelutils::GetAdjustmentsMode(GetSession().GetSelectedMixTypeClipModels(), mode) !=
      0) {
    throw EditError("the selected clips differ in their mode");
  }
  if (!IsMode(mode)) throw EditError("the selected clips have no mode; give them one with mode");
  return mode;
}

orvel::OrvelModel::SectionModels SelectedClips::GetSections() const {
  GetMode();
  orvel::OrvelModel::SectionModels sections;
  model_->GetSectionModels(sections);
  return sections;
}

void SelectedClips::Execute(const boost::intrusive_ptr<orvel::Action>& action) const {
  if (!orvel::ExecuteOrvelAction(action)) throw EditError("another change is under way");
  Announce();
}

void SelectedClips::Announce() const { teskcore::threads::GetDefaultEventLoop()->Drain(); }

}  // namespace orvelhost
