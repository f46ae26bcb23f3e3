#include "host/session/session_renderer.h"

#include <set>
#include <system_error>

#include "host/audio/audio_error.h"
#include "host/render/renderer.h"

namespace orvelhost {
namespace {

/// The file's name with another ending, and a number if it was given already.
std::string MakeName(const std::filesystem::path& source, std::set<std::string>& given) {
  const std::string stem = source.stem().string();
  std::string name = stem + ".wav";
  for (int number = 2; !given.insert(name).second; ++number) {
    name = stem + " " + std::to_string(number) + ".wav";
  }
  return name;
}

RenderRequest MakeRequest(const SessionClip& held) {
  RenderRequest request;
  request.input = held.source;
  request.measureLevels = false;
  std::string mode;
  held.clip->GetAdjustmentsMode(mode);
  if (!orvel::ModeDescriptorCache::Get()->IsValidMode(mode)) return request;
  request.mode = mode;
  boost::intrusive_ptr<orvel::OrvelModel> model;
  orvel::factory::CreateOrvelModelForClips({held.clip}, model);
  orvel::OrvelModel::SectionModels sections;
  model->GetSectionModels(sections);
  orvel::modelutils::GetUserPresetData(sections, request.preset.emplace().PresetData);
  return request;
}

}  // namespace

std::vector<RenderedClip> RenderSession(const Host& host, const std::filesystem::path& folder,
                                        const std::function<bool(double done)>& progress) {
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error) throw AudioError("cannot make the folder " + Quoted(folder) + ": " + error.message());
  std::set<std::string> given;
  std::vector<RenderedClip> rendered;
  for (const SessionClip& held : host.GetSession()->GetClips()) {
    RenderedClip& one = rendered.emplace_back();
    one.number = rendered.size();
    one.output = folder / MakeName(held.source, given);
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
