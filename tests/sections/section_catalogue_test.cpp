#include <cmath>
#include <fstream>
#include <limits>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvel/core/text.h"
#include "orvel/definitions/section_registry.h"
#include "orvel/sections/clarity_section.h"

namespace orvel {
namespace {

const std::string kSections[] = {"model_loudness",     "model_restoration", "model_clarity",
                                 "model_soundeffects", "model_volume",      "model_duration",
                                 "model_pan",          "model_stereowidth"};

SectionDefinition Build(const std::string& modelID, const PropList& configuration) {
  SectionDefinition definition;
  EXPECT_TRUE(factory::CreateSectionModelDefinition(modelID, configuration, definition));
  return definition;
}

void Print(std::ostream& out, ParameterMapping mapping) {
  const ParameterModifier modifier = mapping.GetModifier();
  out << "    " << mapping.GetParamIndex();
  for (const float amount : {1.0f, 0.3f, 0.0f}) {
    mapping.SetModifierValue(amount);
    out << " =";
    for (const float place : {0.0f, 0.25f, 0.5f, 1.0f}) out << ' ' << mapping.FromNormalized(place);
    if (!mapping.HasModifierFunction()) break;
    out << " (" << modifier.GetParamID() << " at " << amount << ')';
    EXPECT_NEAR(modifier.Invert(modifier.Modify(0.9f, amount), amount), 0.9f, 1e-5f);
  }
  out << '\n';
}

std::string Print(SectionDefinition section) {
  std::ostringstream out;
  out << section.GetModelID() << '|' << section.GetSectionKey() << '|'
      << UTF16to8(section.GetLocalizedName()) << '\n';
  for (const auto& p : section.GetParamDefinitions()) {
    ControlDefinition none(u"", 0, "");
    ControlDefinition* control = &none;
    const ParamType role = section.GetParamTypeAndControl(p.id, &control);
    out << p.id << '|' << p.key << '|' << p.description << '|' << p.name << '|' << p.flags << '|'
        << p.defaultValue << '|' << p.minValue << '|' << p.maxValue << "|role " << role << ' '
        << control->GetControlKey() << '\n';
  }
  return out.str();
}

std::string Print(const ControlDefinition& control) {
  std::ostringstream out;
  out << "  " << control.GetControlKey() << '|' << UTF16to8(control.GetComponentID()) << "|order "
      << control.GetEffectOrderNumber() << "|enabled by " << control.GetEnableParamID()
      << (control.GetCPUIntensive() ? "|costly" : "") << '\n';
  std::vector<ParameterModifier> modifiers;
  control.GetParameterModifiers(modifiers);
  for (const auto& modifier : modifiers) out << "  bent by " << modifier.GetParamID() << '\n';
  for (const auto& [id, mappings] : control.GetParameterMap()) {
    out << "  " << id << " moves\n";
    for (const auto& mapping : mappings) Print(out, mapping);
  }
  return out.str();
}

std::vector<float> Ramp(std::size_t size, float start, float step) {
  std::vector<float> values;
  for (std::size_t i = 0; i < size; ++i) values.push_back(start + step * static_cast<float>(i));
  return values;
}

// Curves of the rumble's filter with so many values; the larger point count of the two is 5.
PropList Configure(float maxGain, float noiseSize, std::size_t startSize, std::size_t endSize) {
  PropList presets;
  presets.SetValue("b", Ramp(15, 0.7f, 0.02f));
  presets.SetValue("a", Ramp(15, 0.0f, 0.03f));
  presets.SetValue("c", Ramp(15, 0.3f, 0.0f));
  presets.SetValue("aa", 1.0f);  // no list: neither mapped nor counted
  std::vector<float> noise = {0.1f, 0.2f, 0.3f, 0.4f, 0.5f, 0.6f, noiseSize, 0.7f};
  std::vector<float> start(startSize, 0.0f);
  std::vector<float> end(endSize, 1.0f);
  if (startSize > 9) start[9] = 3.0f / 128.0f;
  if (endSize > 9) end[9] = 5.0f / 128.0f;
  start[4] = 0.01f * static_cast<float>(endSize);
  PropList config;
  config.SetValue("MinGain", 3.0f);
  config.SetValue("MaxGain", maxGain);
  config.SetValue("EQPresets", presets);
  config.SetValue("ReverbPresets", presets);
  config.SetValue("ReduceNoiseMinSetting", noise);
  config.SetValue("ReduceNoiseMaxSetting", std::vector<float>{0.9f, 0, 0, 0, 0, 0, 2048, 0.8f});
  config.SetValue("ReduceSibilanceMinSetting", std::vector<float>{0.875f, 9, 9, 0.2f});
  config.SetValue("ReduceRumbleMinSetting", start);
  config.SetValue("ReduceRumbleMaxSetting", end);
  return config;
}

// Documents, presets and translations know parameters by what stands in this file, and what a clip
// sounds like hangs on every number of it: the effects' parameters at 0, 1/4, 1/2 and 1 of the
// control's way.
TEST(SectionCatalogue, EverySectionIsTheOneThatDocumentsAndClipsKnow) {
  std::ostringstream sections;
  std::set<std::string> printed;
  for (const auto& config : {Configure(12, 512, 26, 26),
                             Configure(3, 1, 9, 9),
                             Configure(12, 1.5f, 20, 22),
                             Configure(12, 0.25f, 26, 26),
                             {}}) {
    for (const auto& modelID : kSections) {
      const SectionDefinition section = Build(modelID, config);
      std::vector<std::string> parts = {Print(section)};
      for (const auto& control : section.GetControlDefinitions()) parts.push_back(Print(control));
      for (const auto& part : parts) {
        if (printed.insert(part).second) sections << part;  // not what another one gave already
      }
    }
  }
  // Quieter and louder parts, in dBFS, that stand apart, together and beyond the scale.
  const float kNaN = std::numeric_limits<float>::quiet_NaN();
  for (const auto& [upper, lower] : {std::pair{-20.0f, -40.0f},
                                     {-30.0f, -30.0f},
                                     {0.0f, 0.0f},
                                     {-200.0f, -200.0f},
                                     {100.0f, 100.0f},
                                     {kNaN, kNaN}}) {
    sections << "dynamics of " << upper << ' ' << lower << '\n';
    for (const auto& mapping : SectionClarityConfig::ComputeDynamicsProcessorSettings(upper, lower))
      Print(sections, mapping);
  }
  std::ostringstream known;
  known << std::ifstream(ORVEL_TEST_DATA_DIR "/sections.txt").rdbuf();
  EXPECT_EQ(sections.str(), known.str());
}

// Under every key that a section reads a value of the wrong type, or one out of all bounds.
TEST(SectionCatalogue, AHostileConfigurationLeavesEverySectionItsParameters) {
  const float kInf = std::numeric_limits<float>::infinity();
  PropList presets;
  presets.SetValue("empty", std::vector<float>());
  presets.SetValue("wild", std::vector<float>(40, kInf));
  presets.SetValue("number", 1.0f);
  presets.SetValue("tree", PropList());
  std::vector<float> curve(300, std::numeric_limits<float>::quiet_NaN());
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
  for (const auto& modelID : kSections) {
    const auto definition = Build(modelID, config);
    EXPECT_EQ(definition.GetConfiguration().GetCount(), config.GetCount());
    int id = 0;
    for (const auto& param : definition.GetParamDefinitions()) {
      EXPECT_EQ(param.id, id++) << modelID;
      EXPECT_LE(param.minValue, param.defaultValue) << param.key;
      EXPECT_GE(param.maxValue, param.defaultValue) << param.key;
    }
  }
}

}  // namespace
}  // namespace orvel
