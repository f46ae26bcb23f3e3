#include <cmath>
#include <fstream>
#include <limits>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvel/core/component_ids.h"
#include "orvel/core/text.h"
#include "orvel/definitions/normalized_value.h"
#include "orvel/definitions/section_registry.h"
#include "orvel/sections/clarity_section.h"
#include "orvel/sections/pan_section.h"
#include "orvel/sections/restoration_section.h"
#include "orvel/sections/sound_effects_section.h"
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
    {"model_loudness", "LoudnessSection", u"Loudness", {}},
    {"model_restoration",
     "RestorationSection",
     u"Repair",
     {"ReduceNoise", "ReduceHum", "ReduceSibilance", "ReduceRumble"}},
    {"model_clarity", "ClaritySection", u"Clarity", {"Dynamics", "EQ", "VocalEnhancer"}},
    {"model_soundeffects", "SoundEffectsSection", u"Creative", {"Reverb"}},
    {"model_volume", "VolumeSection", u"Volume", {"Gain"}},
    {"model_duration", "DurationSection", u"Duration", {}},
    {"model_pan", "PanSection", u"Pan", {}},
    {"model_stereowidth", "StereoWidthSection", u"Stereo Width", {"StereoWidth"}},
};

SectionDefinition Build(const std::string& modelID, const PropList& configuration = {}) {
  SectionDefinition definition;
  EXPECT_TRUE(factory::CreateSectionModelDefinition(modelID, configuration, definition));
  return definition;
}

PropList Table(const std::map<std::string, std::vector<float>>& entries) {
  PropList table;
  for (const auto& [name, values] : entries) table.SetValue(name, values);
  return table;
}

// Under every key that a section reads a value of the wrong type, or one out of all bounds.
PropList HostileConfiguration() {
  const float kInf = std::numeric_limits<float>::infinity();
  const float kNaN = std::numeric_limits<float>::quiet_NaN();
  PropList presets = Table({{"empty", {}}, {"wild", std::vector<float>(40, kInf)}});
  presets.SetValue("number", 1.0f);
  presets.SetValue("tree", PropList());
  std::vector<float> curve(300, kNaN);
  curve[9] = 1e30f;
  PropList config;
  config.SetValue("MinGain", std::uint32_t{7});
  config.SetValue("MaxGain", std::vector<float>{1.0f});
  config.SetValue("EQPresets", presets);
  config.SetValue("ReverbPresets", presets);
  config.SetValue("ReduceNoiseMinSetting", 1.0f);
  config.SetValue("ReduceSibilanceMinSetting", std::vector<float>(1000, -kInf));
  config.SetValue("ReduceRumbleMinSetting", curve);
  config.SetValue("ReduceRumbleMaxSetting", curve);
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
      EXPECT_EQ(definition.GetConfiguration().GetCount(), config.GetCount());
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

// Documents, presets and translations know parameters by what stands in this file.
TEST(SectionCatalogue, TheParametersAreTheOnesThatDocumentsKnow) {
  std::ostringstream table;
  table.precision(9);
  for (const auto& subject : kSections) {
    const auto definition = Build(subject.modelID);
    for (const auto& p : definition.GetParamDefinitions()) {
      table << p.id << '|' << p.key << '|' << p.description << '|' << p.name << '|' << p.flags
            << '|' << p.defaultValue << '|' << p.minValue << '|' << p.maxValue << '\n';
    }
  }
  std::ifstream file(ORVEL_TEST_DATA_DIR "/section_parameters.txt");
  std::ostringstream known;
  known << file.rdbuf();
  EXPECT_EQ(table.str(), known.str());
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

TEST(SectionCatalogue, AStraightRangeLeadsBackFromTheEffectToTheControl) {
  int ranges = 0;
  for (const auto& subject : kSections) {
    const auto definition = Build(subject.modelID);
    for (const auto& control : definition.GetControlDefinitions()) {
      for (const auto& [id, mappings] : control.GetParameterMap()) {
        for (const auto& mapping : mappings) {
          const float start = mapping.FromNormalized(0.0f);
          const float end = mapping.FromNormalized(1.0f);
          // Only two keypoints promise the way back.
          const ParameterMapping range(mapping.GetParamIndex(), start, end, 1.0f);
          if (start == end || !(mapping == range)) continue;
          ++ranges;
          for (const float place : {0.125f, 0.5f, 0.875f}) {
            bool found = false;
            bool ambiguous = false;
            bool interpolated = false;
            const float back =
                mapping.ToNormalized(mapping.FromNormalized(place), found, ambiguous, interpolated);
            EXPECT_TRUE(found && interpolated && !ambiguous) << control.GetControlKey();
            EXPECT_NEAR(back, place, 2e-4f) << control.GetControlKey();
          }
        }
      }
    }
  }
  EXPECT_GT(ranges, 20);
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
}

TEST(PanSection, HasNoControlForTheHostPansItself) {
  const auto definition = Build("model_pan");
  const ControlDefinition* control = nullptr;
  EXPECT_EQ(definition.GetParamTypeAndControl(SectionModelPanParams::kPan, &control),
            kUnknownParam);
  EXPECT_EQ(control, nullptr);
}

const ControlDefinition& Control(const SectionDefinition& definition, std::size_t index) {
  return definition.GetControlDefinitions()[index];
}

// The mappings under one model parameter, by effect parameter.
std::map<unsigned, ParameterMapping> Mapped(const ControlDefinition& control, int param) {
  std::map<unsigned, ParameterMapping> mappings;
  for (const auto& mapping : control.GetParameterMappings(param)) {
    mappings.emplace(mapping.GetParamIndex(), mapping);
  }
  return mappings;
}

TEST(SectionCatalogue, EffectsStandInTheirOrderInTheChain) {
  std::map<std::u16string, int> orders;
  std::set<std::u16string> costly;
  for (const auto& subject : kSections) {
    const auto definition = Build(subject.modelID);
    for (const auto& control : definition.GetControlDefinitions()) {
      orders[control.GetComponentID()] = control.GetEffectOrderNumber();
      if (control.GetCPUIntensive()) costly.insert(control.GetComponentID());
    }
  }
  const std::map<std::u16string, int> expected = {
      {kAdaptiveNoiseReductionID, 20}, {kFFTFilterID, 25},
      {kIzotopeDeHummerID, 30},        {kDynamicsID, 40},
      {kGraphicEQ10BandsID, 45},       {kIzotopeDeEsserID, 47},
      {kIzotopeVocalEnhancerID, 50},   {kStereoExpanderID, 60},
      {kStudioReverbID, 80},           {kHardLimiterID, 100}};
  EXPECT_EQ(orders, expected);
  EXPECT_EQ(costly, std::set<std::u16string>{kAdaptiveNoiseReductionID});
}

TEST(RestorationSection, NoiseSettingsSweepBetweenTheConfiguredEnds) {
  const auto noise = [](const PropList& config) {
    return Mapped(Control(Build("model_restoration", config), 0),
                  SectionModelRestorationParams::kReduceNoise);
  };
  const auto plain = noise({});
  ASSERT_EQ(plain.size(), 7u);  // without a configured size the effect keeps its own
  EXPECT_EQ(plain.at(0), ParameterMapping(0, 0.375f, 0.6f, 1.0f));
  EXPECT_EQ(plain.at(4), ParameterMapping(4, 0.109589f, 0.246575f, 1.0f));
  EXPECT_EQ(plain.at(7), ParameterMapping(7, 0.0f, 1.0f));

  const struct {
    float size, normalized;
  } sizes[] = {{512.0f, 512.0f / 65536.0f}, {1.0f, 1.0f}, {1.5f, 1.5f / 65536.0f}, {0.25f, 0.25f}};
  for (const auto& [size, normalized] : sizes) {
    PropList config;
    config.SetValue(SectionRestorationConfig::kConfig_ReduceNoiseMinSetting,
                    std::vector<float>{0.1f, 0.2f, 0.3f, 0.4f, 0.5f, 0.6f, size, 0.7f});
    config.SetValue(SectionRestorationConfig::kConfig_ReduceNoiseMaxSetting,
                    std::vector<float>{0.9f, 0, 0, 0, 0, 0, 2048.0f, 0.8f});
    const auto configured = noise(config);
    EXPECT_EQ(configured.at(0), ParameterMapping(0, 0.1f, 0.9f, 1.0f));
    EXPECT_EQ(configured.at(6), ParameterMapping(6, normalized, 1.0f));
    EXPECT_EQ(configured.at(7), ParameterMapping(7, 0.7f, 1.0f));
  }
}

TEST(RestorationSection, HumFollowsTheAmountAndTheMainsFrequency) {
  const auto definition = Build("model_restoration");
  const auto& control = Control(definition, 1);
  const auto gain = Mapped(control, SectionModelRestorationParams::kReduceHum).at(2);
  EXPECT_EQ(gain, ParameterMapping(2, 70.0f / 85.0f, 0.0f, 1.0f));
  const auto base = Mapped(control, SectionModelRestorationParams::kHumFrequency).at(0);
  EXPECT_FLOAT_EQ(base.FromNormalized(0.0f), 30.0f / 19980.0f);
  EXPECT_FLOAT_EQ(base.FromNormalized(1.0f), 40.0f / 19980.0f);
  EXPECT_EQ(control.GetEnableParamID(), SectionModelRestorationParams::kEnableReduceHum);
}

TEST(RestorationSection, SibilanceFallsBackElementByElement) {
  PropList config;
  config.SetValue(SectionRestorationConfig::kConfig_ReduceSibilanceMinSetting,
                  std::vector<float>{0.875f, 9, 9, 0.2f});
  const auto definition = Build("model_restoration", config);
  const auto mapped =
      Mapped(Control(definition, 2), SectionModelRestorationParams::kReduceSibilance);
  ASSERT_EQ(mapped.size(), 5u);
  EXPECT_EQ(mapped.at(0), ParameterMapping(0, 0.875f, 0.4f, 1.0f));
  EXPECT_EQ(mapped.at(3), ParameterMapping(3, 0.2f, 4200.0f / 11500.0f, 1.0f));
  EXPECT_EQ(mapped.at(4), ParameterMapping(4, 2400.0f / 7400.0f, 3900.0f / 7400.0f, 1.0f));
  EXPECT_EQ(mapped.at(5), ParameterMapping(5, 0.0f, 1.0f));
  EXPECT_EQ(mapped.at(6), ParameterMapping(6, 1.0f, 1.0f));
}

std::map<unsigned, ParameterMapping> Rumble(const std::vector<float>& start,
                                            const std::vector<float>& end) {
  PropList config;
  config.SetValue(SectionRestorationConfig::kConfig_ReduceRumbleMinSetting, start);
  config.SetValue(SectionRestorationConfig::kConfig_ReduceRumbleMaxSetting, end);
  return Mapped(Control(Build("model_restoration", config), 3),
                SectionModelRestorationParams::kReduceRumble);
}

TEST(RestorationSection, RumbleWithoutAUsableCurveTakesTheFixedOne) {
  const std::vector<float> nine(9, 0.5f);
  for (const auto& mapped : {Rumble({}, {}), Rumble(nine, nine),
                             Rumble(std::vector<float>(20, 0.5f), std::vector<float>(22, 0.5f))}) {
    ASSERT_EQ(mapped.size(), 9u);
    EXPECT_EQ(mapped.at(9), ParameterMapping(9, 4.0f / 128.0f, 1.0f));
    EXPECT_EQ(mapped.at(11), ParameterMapping(11, 0.75f, 0.0f, 1.0f));
    EXPECT_EQ(mapped.at(14), ParameterMapping(14, 0.0045351475f, 1.0f));
    EXPECT_EQ(mapped.at(17), ParameterMapping(17, 0.75f, 1.0f));
  }
}

TEST(RestorationSection, TheLargerPointCountOfTheRumbleCurvesIsMappedInRisingOrder) {
  std::vector<float> start(10 + 2 * 8, 0.0f);
  std::vector<float> end(start.size(), 1.0f);
  start[9] = 3.0f / 128.0f;
  end[9] = 5.0f / 128.0f;
  start[4] = 0.3f;
  const auto mapped = Rumble(start, end);
  EXPECT_EQ(mapped.at(9), ParameterMapping(9, 5.0f / 128.0f, 1.0f));
  EXPECT_EQ(mapped.at(4), ParameterMapping(4, 0.3f, 1.0f));
  EXPECT_FALSE(mapped.contains(5));
  EXPECT_FALSE(mapped.contains(6));
  EXPECT_TRUE(mapped.contains(19));
  EXPECT_FALSE(mapped.contains(20));  // the sixth point
  // Bounded by the larger count: whatever a curve says, each point lies above the one before it.
  EXPECT_EQ(mapped.at(12), ParameterMapping(12, 0.0009070295f + 0.00001f, 1.0f - 3 * 0.00001f, 1));
  for (unsigned point = 1; point < 5; ++point) {
    for (const float amount : {0.0f, 0.5f, 1.0f}) {
      EXPECT_GT(mapped.at(10 + 2 * point).FromNormalized(amount),
                mapped.at(8 + 2 * point).FromNormalized(amount));
    }
  }
  EXPECT_EQ(mapped.at(13), ParameterMapping(13, 0.0f, 1.0f, 1.0f));  // gains are not bounded
}

TEST(PresetTables, GiveEachEffectParameterAKeypointPerPresetInTheOrderOfNames) {
  const std::vector<float> low(15, 0.25f);
  const std::vector<float> high(15, 0.75f);
  PropList presets = Table({{"b", high}, {"a", low}, {"c", low}});
  presets.SetValue("aa", 1.0f);  // no list: neither mapped nor counted
  PropList config;
  config.SetValue(SectionClarityConfig::kConfig_EQPresets, presets);
  config.SetValue(SectionSoundEffectsConfig::kConfig_ReverbPresets, presets);

  const auto clarity = Build("model_clarity", config);
  const auto eq = Mapped(Control(clarity, 1), SectionModelClarityParams::kEQPreset);
  ASSERT_EQ(eq.size(), 14u);
  EXPECT_FALSE(eq.contains(14));
  EXPECT_EQ(eq.at(0), ParameterMapping(0, {0.25f, 0.75f, 0.25f}, 1.0f));
  EXPECT_EQ(clarity.GetParamDefinitions()[SectionModelClarityParams::kEQPreset].maxValue, 2.0f);

  const auto creative = Build("model_soundeffects", config);
  const auto reverb = Mapped(Control(creative, 0), SectionModelSoundEffectsParams::kReverbPreset);
  EXPECT_EQ(reverb.size(), 11u);  // 0 to 8, 13 and 14
  for (const unsigned own : {9u, 10u, 11u, 12u}) EXPECT_FALSE(reverb.contains(own));
  const auto amount = Mapped(Control(creative, 0), SectionModelSoundEffectsParams::kAdjustReverb);
  EXPECT_EQ(amount.at(9), ParameterMapping(9, 1.0f, 0.0f, 1.0f));
  EXPECT_EQ(amount.at(10), ParameterMapping(10, 0.0f, 1.0f, 1.0f));

  const auto plain = Build("model_soundeffects");
  EXPECT_EQ(plain.GetParamDefinitions()[SectionModelSoundEffectsParams::kReverbPreset].maxValue, 0);
  EXPECT_TRUE(Mapped(Control(plain, 0), SectionModelSoundEffectsParams::kReverbPreset).empty());
}

TEST(ClaritySection, TheAmountBlendsTheBandsOfACurveTowardsFlatAndNothingElse) {
  PropList config;
  std::vector<float> curve(15, 0.0715f);
  config.SetValue("EQPresets", Table({{"a", curve}}));
  const auto definition = Build("model_clarity", config);
  auto eq = Mapped(Control(definition, 1), SectionModelClarityParams::kEQPreset);
  for (auto& [index, mapping] : eq) {
    const bool band = index >= 4 && index <= 13;
    EXPECT_EQ(mapping.HasModifierFunction(), band) << index;
    mapping.SetModifierValue(0.0f);
    EXPECT_NEAR(mapping.FromNormalized(0.0f), band ? 0.4957f : 0.0715f, 5e-5f) << index;
    mapping.SetModifierValue(1.0f);
    EXPECT_FLOAT_EQ(mapping.FromNormalized(0.0f), 0.0715f);
  }
  const auto amount = eq.at(4).GetModifier();
  EXPECT_EQ(amount.GetParamID(), SectionModelClarityParams::kEQAmount);
  for (const float a : {0.0f, 0.3f, 1.0f}) {
    EXPECT_NEAR(amount.Invert(amount.Modify(0.9f, a), a), 0.9f, 1e-5f);
  }
  const ControlDefinition* control = nullptr;
  EXPECT_EQ(definition.GetParamTypeAndControl(SectionModelClarityParams::kEQAmount, &control),
            kModifierParam);
  for (int band = 0; band < 10; ++band) {
    const std::vector<ParameterMapping> readBack = {
        {static_cast<unsigned>(4 + band), 0.0f, 1.0f, 1.0f}};
    EXPECT_EQ(control->GetParameterMappings(SectionModelClarityParams::kEQCurveValue0 + band),
              readBack);
  }
}

TEST(ClaritySection, DynamicsAndEnhancerMoveTheirFixedParameters) {
  const auto definition = Build("model_clarity");
  const std::vector<ParameterMapping> dynamics = {
      {10, 3.0f / 7.0f, 1.0f}, {17, 0.0f, 1.0f}, {18, 0.0f, 0.4f, 1.0f}, {19, 0.6f, 0.7f, 1.0f},
      {20, 0.7f, 0.6f, 1.0f},  {21, 1.0f, 1.0f}, {22, 1.0f, 0.8f, 1.0f}, {14, 1.0f, 1.0f}};
  EXPECT_EQ(Control(definition, 0).GetParameterMappings(SectionModelClarityParams::kDynamicsAmount),
            dynamics);
  const std::vector<ParameterMapping> enhancer = {{0, 0.5f, 0.0f, 1.0f}};
  EXPECT_EQ(
      Control(definition, 2).GetParameterMappings(SectionModelClarityParams::kVocalEnhancerMode),
      enhancer);
}

std::vector<ParameterMapping> DynamicsFor(float m, float p) {
  return {{10, 6.0f / 7.0f, 1.0f}, {14, 1.0f, 1.0f},
          {17, 0.0f, 1.0f},        {18, 0.0f, 1.0f},
          {19, m * 0.5f, 1.0f},    {20, m * 0.5f, 0.0f, 1.0f},
          {21, m * 0.8f, 1.0f},    {22, m * 0.8f, m * 0.4f, 2.0f},
          {23, m + 0.01f, 1.0f},   {24, m + 0.01f, 1.0f},
          {25, p, 1.0f},           {26, p, p > 0.95f ? p : 0.95f, 1.5f},
          {27, 1.0f, 1.0f},        {28, 1.0f, 0.98f, 1.0f}};
}

TEST(ClaritySection, DynamicsSettingsFollowTheLevelsOfTheClip) {
  const auto compute = SectionClarityConfig::ComputeDynamicsProcessorSettings;
  EXPECT_EQ(compute(-20.0f, -40.0f), DynamicsFor(0.7f, 0.8f));
  EXPECT_EQ(compute(-30.0f, -30.0f), DynamicsFor(0.7f, 0.7f + 0.02f));
  EXPECT_EQ(compute(0.0f, 0.0f), DynamicsFor(1.0f, 1.0f));
  EXPECT_EQ(compute(-200.0f, -200.0f), DynamicsFor(0.01f, 0.01f + 0.02f));
  EXPECT_EQ(compute(100.0f, 100.0f), DynamicsFor(1.0f, 1.0f));
  const float kNaN = std::numeric_limits<float>::quiet_NaN();
  EXPECT_EQ(compute(kNaN, kNaN), DynamicsFor(0.01f, 0.01f + 0.02f));
}

}  // namespace
}  // namespace orvel
