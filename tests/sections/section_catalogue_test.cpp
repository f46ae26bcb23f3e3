#include <cmath>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvel/core/component_ids.h"
#include "orvel/core/text.h"
#include "orvel/definitions/normalized_value.h"
#include "orvel/definitions/section_registry.h"
#include "orvel/sections/pan_section.h"
#include "orvel/sections/stereo_width_section.h"
#include "orvel/sections/volume_section.h"

namespace orvel {
namespace {

struct Subject {
  const char* modelID;
  const char* sectionKey;
  const char16_t* name;
  std::vector<std::string> controls;
};

const Subject kSections[] = {
    {"model_volume", "VolumeSection", u"Volume", {"Gain"}},
    {"model_pan", "PanSection", u"Pan", {}},
    {"model_stereowidth", "StereoWidthSection", u"Stereo Width", {"StereoWidth"}},
};

SectionDefinition Build(const std::string& modelID, const PropList& configuration = {}) {
  SectionDefinition definition;
  EXPECT_TRUE(factory::CreateSectionModelDefinition(modelID, configuration, definition));
  return definition;
}

// Values of the wrong type under every key that a section reads.
PropList HostileConfiguration() {
  PropList config;
  config.SetValue("MinGain", std::uint32_t{7});
  config.SetValue("MaxGain", std::vector<float>{1.0f});
  config.SetValue("unknown", PropList());
  return config;
}

TEST(SectionCatalogue, EverySectionIsRegisteredUnderItsIdentity) {
  for (const auto& subject : kSections) {
    const auto definition = Build(subject.modelID);
    EXPECT_EQ(definition.GetModelID(), subject.modelID);
    EXPECT_EQ(definition.GetSectionKey(), subject.sectionKey);
    EXPECT_EQ(definition.GetLocalizedName(), subject.name);
    std::vector<std::string> controls;
    for (const auto& control : definition.GetControlDefinitions()) {
      controls.push_back(control.GetControlKey());
    }
    EXPECT_EQ(controls, subject.controls);
  }
}

TEST(SectionCatalogue, EveryTableHasIdsInOrderAndUniqueNamesAndKeys) {
  for (const auto& subject : kSections) {
    for (const auto& config : {PropList(), HostileConfiguration()}) {
      const auto definition = Build(subject.modelID, config);
      EXPECT_EQ(definition.GetConfiguration(), config);
      std::set<std::string> names;
      std::set<std::string> keys;
      int id = 0;
      for (const auto& param : definition.GetParamDefinitions()) {
        EXPECT_EQ(param.id, id++) << subject.modelID;
        EXPECT_TRUE(names.insert(param.name).second) << param.name;
        EXPECT_TRUE(keys.insert(param.key).second) << param.key;
        EXPECT_LE(param.minValue, param.defaultValue) << param.key;
        EXPECT_GE(param.maxValue, param.defaultValue) << param.key;
      }
      EXPECT_EQ(definition.GetEnableParam().name, "Enabled");
    }
  }
}

TEST(SectionCatalogue, EveryMappedParameterStaysInsideItsEffectsScale) {
  for (const auto& subject : kSections) {
    const auto definition = Build(subject.modelID);
    for (const auto& control : definition.GetControlDefinitions()) {
      EXPECT_LT(static_cast<std::size_t>(control.GetEnableParamID()),
                definition.GetParamDefinitions().size());
      for (const auto& [id, mappings] : control.GetParameterMap()) {
        EXPECT_LT(static_cast<std::size_t>(id), definition.GetParamDefinitions().size());
        for (const auto& mapping : mappings) {
          for (float place = 0.0f; place <= 1.0f; place += 0.125f) {
            const float value = mapping.FromNormalized(place);
            EXPECT_TRUE(value >= 0.0f && value <= 1.0f) << control.GetControlKey();
          }
        }
      }
    }
  }
}

TEST(VolumeSection, TheSliderMovesGainAndCeilingOfTheLimiter) {
  const auto definition = Build("model_volume");
  const auto& control = definition.GetControlDefinitions().front();
  EXPECT_EQ(control.GetComponentID(), kHardLimiterID);
  EXPECT_EQ(SectionVolumeConfig::GetGainComponentID(), kHardLimiterID);
  EXPECT_EQ(control.GetEffectOrderNumber(), 100);
  EXPECT_EQ(control.GetEnableParamID(), SectionModelVolumeParams::kEnableVolume);
  const std::vector<ParameterMapping> expected = {{1, 85.0f / 150.0f, 106.0f / 150.0f, 1.0f},
                                                  {0, 1.0f, 0.97f, 1.0f}};
  EXPECT_EQ(control.GetParameterMappings(SectionModelVolumeParams::kVolume), expected);
  const auto& volume = definition.GetParamDefinitions()[SectionModelVolumeParams::kVolume];
  EXPECT_EQ(volume.flags, 32u);
  EXPECT_EQ(volume.minValue, -15.0f);
  EXPECT_EQ(volume.maxValue, 6.0f);
}

TEST(VolumeSection, TheConfigurationSetsTheRangeButNotTheDefault) {
  const auto build = [](float min, float max) {
    PropList config;
    config.SetValue(SectionVolumeConfig::kConfig_MinGain, min);
    config.SetValue(SectionVolumeConfig::kConfig_MaxGain, max);
    return Build("model_volume", config);
  };
  const auto raised = build(3.0f, 12.0f);
  const auto& volume = raised.GetParamDefinitions()[SectionModelVolumeParams::kVolume];
  EXPECT_EQ(volume.minValue, 3.0f);
  EXPECT_EQ(volume.maxValue, 12.0f);
  EXPECT_EQ(volume.defaultValue, 0.0f);
  const auto gains = raised.GetControlDefinitions().front().GetParameterMappings(2);
  EXPECT_FLOAT_EQ(gains[0].FromNormalized(0.0f), 103.0f / 150.0f);
  EXPECT_FLOAT_EQ(gains[0].FromNormalized(1.0f), 112.0f / 150.0f);

  const auto flat = build(4.0f, 4.0f).GetControlDefinitions().front().GetParameterMappings(2)[0];
  EXPECT_EQ(flat.FromNormalized(0.0f), flat.FromNormalized(1.0f));
  // The table itself is never touched.
  EXPECT_EQ(SectionModelVolumeParams::sParamDefinitions[2].maxValue, 6.0f);
}

TEST(StereoWidthSection, HoldsTheCentreAndSweepsTheWidth) {
  const auto definition = Build("model_stereowidth");
  const auto& control = definition.GetControlDefinitions().front();
  EXPECT_EQ(control.GetComponentID(), kStereoExpanderID);
  EXPECT_EQ(SectionStereoWidthConfig::GetStereoWidthComponentID(), kStereoExpanderID);
  EXPECT_EQ(control.GetEffectOrderNumber(), 60);
  const std::vector<ParameterMapping> expected = {{0, 0.5f, 1.0f}, {1, 0.0f, 1.0f, 1.0f}};
  EXPECT_EQ(control.GetParameterMappings(2), expected);
  EXPECT_EQ(SectionModelStereoWidthParams::sParamDefinitions[2].defaultValue, 3.3333333f);
}

TEST(PanSection, HasNoControlForTheHostPansItself) {
  const auto definition = Build("model_pan");
  const ControlDefinition* control = nullptr;
  EXPECT_EQ(definition.GetParamTypeAndControl(SectionModelPanParams::kPan, &control),
            kUnknownParam);
  EXPECT_EQ(control, nullptr);
  const auto& params = SectionModelPanParams::sParamDefinitions;
  EXPECT_EQ(params[SectionModelPanParams::kPan].minValue, -5.0f);
  EXPECT_EQ(params[SectionModelPanParams::kPan].maxValue, 5.0f);
  EXPECT_EQ(params[SectionModelPanParams::kPanNotSupported].flags, 11u);
}

}  // namespace
}  // namespace orvel
