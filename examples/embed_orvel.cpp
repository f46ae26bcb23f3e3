// The smallest host: one clip without a session. It shows what a host brings (section models, in
// clip_section.h) and what it gets (definitions, mappings, conversions), and prints what a control
// does to an effect.

#include <cstddef>
#include <iostream>
#include <memory>
#include <vector>

#include "examples/clip_section.h"
#include "orvel/orvel.h"

int main() {
  // 1. Say how section models are made. What stays of the section belongs to the clip.
  const auto clip = std::make_shared<example::SectionState>();
  orvel::factory::SetGenericFactoryFunction(
      [clip](const std::string& mode, const orvel::SectionDefinition& definition, const auto&,
             const auto&, bool, boost::intrusive_ptr<orvel::SectionModelInterface>& model) {
        model = new example::ClipSection(
            mode, std::make_shared<const orvel::SectionDefinition>(definition), clip);
      });

  // 2. Start the library. An editor hands over its session and its undo stack here.
  orvel::Initialize(nullptr, nullptr, {});

  // 3. Ask for a section, with the range of its slider set by a configuration.
  orvel::PropList configuration;
  configuration.SetValue(orvel::SectionVolumeConfig::kConfig_MinGain, -24.0f);
  boost::intrusive_ptr<orvel::SectionModelInterface> volume;
  if (!orvel::factory::CreateModelForClips("model_volume", "dialog", configuration, nullptr, {},
                                           false, volume)) {
    return 1;
  }
  const boost::signals2::scoped_connection connection =
      volume->RegisterForModelChanges([&](int id, float value) {
        float physical = 0.0f;
        volume->ToPhysical(id, value, physical);
        std::cout << volume->GetParamDefinition(id).name << " is now " << physical << " dB\n";
      });

  // 4. Move the control. The limiter's parameters follow.
  float normalized = 0.0f;
  volume->ToNormalized(orvel::SectionModelVolumeParams::kVolume, -6.0f, normalized);
  volume->SetParamNormalized(orvel::SectionModelVolumeParams::kVolume, normalized);
  const auto& limiter = clip->effects.front();
  for (std::size_t index = 0; index < limiter.size(); ++index) {
    std::cout << "limiter parameter " << index << " = " << limiter[index] << '\n';
  }

  // 5. Keep the values as a preset would.
  std::vector<float> stored;
  orvel::modelutils::GetParamList(volume, stored);
  std::cout << "stored values:";
  for (const float value : stored) std::cout << ' ' << value;
  std::cout << '\n';

  orvel::Terminate();
  return 0;
}
