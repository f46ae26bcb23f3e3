#include "host/render/session_requests.h"

#include "host/render/render_list.h"

namespace orvelhost {
namespace {

/// Through models of the clip's sections, which ask for what they have to know of it.
Look LookOf(const boost::intrusive_ptr<Clip>& clip) {
  Look look;
  std::string mode;
  clip->GetAdjustmentsMode(mode);
  if (!orvel::ModeDescriptorCache::Get()->IsValidMode(mode)) return look;
  look.mode = mode;
  boost::intrusive_ptr<orvel::OrvelModel> model;
  orvel::factory::CreateOrvelModelForClips({clip}, model);
  orvel::OrvelModel::SectionModels sections;
  model->GetSectionModels(sections);
  orvel::modelutils::GetUserPresetData(sections, look.preset.emplace().PresetData);
  return look;
}

}  // namespace

std::vector<RenderRequest> MakeRequests(Session& session, const std::filesystem::path& folder,
                                        const std::function<bool()>& goOn) {
  std::vector<RenderRequest> requests;
  OutputNames names;
  for (const SessionClip& held : session.GetClips()) {
    RenderRequest& request = requests.emplace_back();
    request.input = held.source;
    request.output = folder / names.Take(held.source);
    request.detail = std::nullopt;
    request.look = LookOf(held.clip);
    request.analyses = &session.GetAnalyses();
  }
  session.AwaitMeasurements(goOn);
  return requests;
}

}  // namespace orvelhost
