#include "host/session/session_renderer.h"

#include <system_error>

#include "host/audio/audio_error.h"
#include "host/render/render_list.h"
#include "host/render/renderer.h"

namespace orvelhost {
namespace {

/// Through models of its sections, which ask for what they have to know of the clip.
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
  Session& session = *host.GetSession();
  std::vector<RenderRequest> requests;
  for (const SessionClip& held : session.GetClips()) requests.push_back(MakeRequest(held));
  session.AwaitMeasurements([&progress] { return !progress || progress(0.0); });
  OutputNames names;
  std::vector<RenderedClip> rendered;
  for (const SessionClip& held : session.GetClips()) {
    RenderRequest& request = requests[rendered.size()];
    RenderedClip& one = rendered.emplace_back();
    one.number = rendered.size();
    one.output = folder / names.Take(held.source);
    request.output = one.output;
    request.progress = progress;
    try {
      if (const auto& known = held.clip->Measurement()) {
        // Kept, unless the file has changed since.
        request.measurement =
            MeasureFile(held.source, known->isMapped, session.GetAnalyses(), progress);
      }
      one.notes = Render(host, request).notes;
    } catch (const AudioError& failure) {
      one.error = failure.what();
    } catch (const Cancelled&) {
      one.error = "stopped; " + Quoted(one.output) + " was not written";
    }
  }
  return rendered;
}

}  // namespace orvelhost
