#include "host/session/session_renderer.h"

#include <system_error>

#include "host/audio/audio_error.h"
#include "host/render/render_list.h"
#include "host/render/renderer.h"

namespace orvelhost {
namespace {

RenderRequest MakeRequest(const SessionClip& held) {
  RenderRequest request;
  request.input = held.source;
  request.detail = std::nullopt;
  std::string mode;
  held.clip->GetAdjustmentsMode(mode);
  if (!orvel::ModeDescriptorCache::Get()->IsValidMode(mode)) return request;
  request.look.mode = mode;
  boost::intrusive_ptr<orvel::OrvelModel> model;
  orvel::factory::CreateOrvelModelForClips({held.clip}, model);
  orvel::OrvelModel::SectionModels sections;
  model->GetSectionModels(sections);
  orvel::modelutils::GetUserPresetData(sections, request.look.preset.emplace().PresetData);
  return request;
}

}  // namespace

std::vector<RenderedClip> RenderSession(const Host& host, const std::filesystem::path& folder,
                                        const std::function<bool(double done)>& progress) {
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error) throw AudioError("cannot make the folder " + Quoted(folder) + ": " + error.message());
  OutputNames names;
  std::vector<RenderedClip> rendered;
  for (const SessionClip& held : host.GetSession()->GetClips()) {
    RenderedClip& one = rendered.emplace_back();
    one.number = rendered.size();
    one.output = folder / names.Take(held.source);
    try {
      RenderRequest request = MakeRequest(held);
      request.output = one.output;
      request.progress = progress;
      one.notes = Render(host, request).notes;
    } catch (const AudioError& failure) {
      one.error = failure.what();
    }
  }
  return rendered;
}

}  // namespace orvelhost
