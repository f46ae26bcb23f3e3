// A host as its author would begin it: a section of its own beside the library's, both built from a
// configuration. Exits with 1 when a definition is not as expected.

#include <cmath>
#include <cstdio>

#include <orvel/orvel.h>

namespace {

constexpr char kOwnModelID[] = "model_consumer";

orvel::SectionDefinition BuildOwnSection(const orvel::PropList& configuration) {
  return {kOwnModelID, u"Consumer", configuration, {}, {}, "ConsumerSection"};
}

bool OwnSectionIsBuilt() {
  orvel::SectionDefinition definition;
  return orvel::factory::RegisterModelDefinition(kOwnModelID, BuildOwnSection) &&
         orvel::factory::CreateSectionModelDefinition(kOwnModelID, {}, definition) &&
         definition.GetSectionKey() == "ConsumerSection";
}

// The volume slider's upper end, as the hard limiter's gain in dB (-100..50), follows "MaxGain".
bool VolumeFollowsItsConfiguration() {
  orvel::PropList configuration;
  configuration.SetValue(orvel::SectionVolumeConfig::kConfig_MaxGain, 12.0f);
  orvel::SectionDefinition volume;
  if (!orvel::factory::CreateSectionModelDefinition("model_volume", configuration, volume)) {
    return false;
  }
  const orvel::ControlDefinition& gain = volume.GetControlDefinitions().front();
  const auto mappings = gain.GetParameterMappings(orvel::SectionModelVolumeParams::kVolume);
  const float loudest =
      orvel::modelutils::ToPhysical(-100.0f, 50.0f, mappings.front().FromNormalized(1.0f));
  std::printf("%s: %zu parameters, loudest %.1f dB\n", volume.GetModelID().c_str(),
              volume.GetParamDefinitions().size(), static_cast<double>(loudest));
  return std::abs(loudest - 12.0f) < 1e-3f;
}

}  // namespace

int main() { return OwnSectionIsBuilt() && VolumeFollowsItsConfiguration() ? 0 : 1; }
