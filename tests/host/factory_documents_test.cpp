#include "host/factory/factory_documents.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <set>
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/effects/effect_catalogue.h"
#include "host/factory/factory_tables.h"
#include "orvel/orvel.h"
#include "tests/support/temp_dir.h"

namespace orvelhost::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

using Values = std::vector<float>;

std::string ReadFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::string Shipped(const std::u16string& name) {
  std::vector<unsigned char> bytes;
  EXPECT_TRUE(orvel::GetBinaryFromModule(orvel::GetLibraryModule(), name, u"json", bytes));
  return {bytes.begin(), bytes.end()};
}

template <typename Record>
std::vector<Record> ReadShipped(const std::u16string& name) {
  std::vector<Record> presets;
  orvel::ReadPresets(Shipped(name), presets);
  return presets;
}

const std::vector<orvel::ConfigPreset>& Templates() {
  static const auto presets = ReadShipped<orvel::ConfigPreset>(u"ORVELCONFIGPRESETS");
  return presets;
}

const std::vector<orvel::UserPreset>& UserPresets() {
  static const auto presets = ReadShipped<orvel::UserPreset>(u"ORVELPRESETS");
  return presets;
}

const std::vector<orvel::AdjustmentsModeDescriptor>& Modes() {
  static const auto modes = orvel::GetDefaultAdjustmentsModeDescriptors();
  return modes;
}

const orvel::ConfigPresetData& Template(const std::string& mode) {
  for (const auto& preset : Templates()) {
    if (preset.PresetData.ModeID == mode) {
      return preset.PresetData;
    }
  }
  throw std::runtime_error("no template for " + mode);
}

const orvel::UserPresetData& UserPreset(const std::string& mode, const std::string& title) {
  for (const auto& preset : UserPresets()) {
    if (preset.PresetData.ModeID == mode && preset.Name.ends_with("=" + title)) {
      return preset.PresetData;
    }
  }
  throw std::runtime_error("no preset " + title);
}

orvel::PropList Configuration(const std::string& mode, const std::string& modelID) {
  return Template(mode).Models.at(modelID);
}

Values Setting(const orvel::PropList& list, const std::string& name) {
  for (const auto& [key, value] : list) {
    if (key == name || key.ends_with("=" + name)) {
      return std::get<Values>(value);
    }
  }
  throw std::runtime_error("no setting " + name);
}

orvel::PropList Presets(const std::string& mode, const std::string& modelID, const char* key) {
  orvel::PropList presets;
  EXPECT_TRUE(Configuration(mode, modelID).GetValue(key, presets));
  return presets;
}

orvel::SectionDefinition Build(const std::string& modelID, const orvel::PropList& configuration) {
  orvel::SectionDefinition definition;
  EXPECT_TRUE(orvel::factory::CreateSectionModelDefinition(modelID, configuration, definition));
  return definition;
}

TEST(FactoryDocuments, TheLibraryShipsWhatTheDesignGives) {
  for (const FactoryDocument& document : FactoryDocuments()) {
    const std::filesystem::path name = document.fileName;
    EXPECT_TRUE(Shipped(name.stem().u16string()) == document.text)
        << name << " is stale: run orvel_factory_documents orvel/resources";
  }
}

TEST(FactoryDocuments, TheManualShowsTheDesign) {
  const std::string manual = ReadFile(ORVEL_TEST_DATA_DIR "/../../docs/factory-presets.md");
  for (const std::string& table : FactoryTables()) {
    EXPECT_TRUE(manual.find(table) != std::string::npos)
        << "docs/factory-presets.md lacks this table of orvel_factory_documents --tables:\n"
        << table;
  }
}

TEST(FactoryDocuments, WrittenBackTheyAreTheSameBytes) {
  std::string text;
  ASSERT_TRUE(orvel::WritePresets(Templates(), text));
  EXPECT_TRUE(text == Shipped(u"OrvelConfigPresets"));
  ASSERT_TRUE(orvel::WritePresets(UserPresets(), text));
  EXPECT_TRUE(text == Shipped(u"OrvelPresets"));
  EXPECT_THAT(text, ::testing::StartsWith("[\r\n\t{\r\n\t\t\"Guid\": \""));
  using namespace teskcore::serialization;
  const std::string modes = Shipped(u"DefaultAdjustmentsModes");
  EXPECT_TRUE(GetJSONUTF8String(JSONParse(modes), true) == modes);
}

TEST(FactoryDocuments, AreWrittenIntoAFolderThatExists) {
  const orvel::test::TempDir folder;
  std::string error;
  ASSERT_TRUE(WriteFactoryDocuments(folder.Path(), error)) << error;
  for (const FactoryDocument& document : FactoryDocuments()) {
    EXPECT_TRUE(ReadFile(folder.Path() / document.fileName) == document.text);
  }
  EXPECT_FALSE(WriteFactoryDocuments(folder.Path() / "none", error));
  EXPECT_THAT(error, HasSubstr("none"));
}

TEST(FactoryDocuments, EachModeHasOneTemplateThatConfiguresItsSections) {
  std::set<std::string> modes;
  for (const auto& preset : Templates()) {
    EXPECT_EQ(preset.Name, "$$$/app/Presets/DefaultPresetName=(Default)");
    EXPECT_TRUE(modes.insert(preset.PresetData.ModeID).second);
    const auto mode = std::ranges::find(Modes(), preset.PresetData.ModeID,
                                        &orvel::AdjustmentsModeDescriptor::modeID);
    ASSERT_NE(mode, Modes().end());
    std::set<std::string> configured;
    for (const auto& [modelID, configuration] : preset.PresetData.Models) {
      configured.insert(modelID);
    }
    std::set<std::string> offered;
    for (const auto& section : mode->sections) {
      offered.insert(section.modelID);
    }
    EXPECT_EQ(configured, offered) << mode->modeID;
  }
  EXPECT_EQ(modes.size(), Modes().size());
}

TEST(FactoryDocuments, AllGuidsDiffer) {
  std::set<orvel::Guid> guids;
  for (const auto& preset : Templates()) {
    EXPECT_TRUE(guids.insert(preset.Guid).second);
    EXPECT_EQ(preset.Type, orvel::ConfigPresetData::kType);
  }
  for (const auto& preset : UserPresets()) {
    EXPECT_TRUE(guids.insert(preset.Guid).second) << preset.Name;
    EXPECT_EQ(preset.Type, orvel::UserPresetData::kType);
  }
  EXPECT_EQ(guids.size(), 4U + 35U);
}

// What was measured on the tools that these settings come from, and what other documents refer to.
TEST(FactoryTemplates, TheMeasuredSettingsComeOutOfTheDesign) {
  const orvel::PropList repair = Configuration("dialog", "model_restoration");
  const orvel::PropList equalizer = Presets("dialog", "model_clarity", "EQPresets");
  const auto reverb = [](const std::string& mode, const std::string& name) {
    return Setting(Presets(mode, "model_soundeffects", "ReverbPresets"), name);
  };
  // clang-format off
  EXPECT_EQ(Setting(repair, "ReduceNoiseMinSetting"), (Values{0.375f, 0.2f, 0.6f, 0.5625f, 0.109589f, 0.3f, 512, 0, 0}));
  EXPECT_EQ(Setting(repair, "ReduceNoiseMaxSetting"), (Values{0.6f, 0.4f, 0.5f, 0.5f, 0.246575f, 0.6f, 2048, 0, 0}));
  EXPECT_EQ(Setting(repair, "ReduceSibilanceMinSetting"), (Values{0.875f, 0.19984f, 0.183673f, 0.191304f, 0.256757f, 0, 1, 0, 0, 0, 0, 0.75f, 1, 1, 0.4f}));
  EXPECT_EQ(Setting(repair, "ReduceSibilanceMaxSetting"), (Values{0.5f, 0.19984f, 0.183673f, 0.26087f, 0.527027f, 0, 1, 0, 0, 0, 0, 0.75f, 1, 1, 0.4f}));
  EXPECT_EQ(Setting(equalizer, "Background Voice"), (Values{0.121f, 0.5f, 0.3924f, 0, 0.5f, 0.5f, 0.5f, 0.5f, 0.5f, 0.4783f, 0.4577f, 0.4578f, 0.4795f, 0.5f, 0}));
  EXPECT_EQ(Setting(equalizer, "Intercom"), (Values{0.1943f, 0.5f, 1, 0, 0.0715f, 0.0715f, 0.0715f, 0.4024f, 0.4857f, 0.5f, 0.5516f, 0.596f, 0.2225f, 0.0715f, 0}));
  EXPECT_EQ(reverb("sfx", "Heavy Reverb"), (Values{0.1332f, 0.2993f, 1, 0.96f, 0.85f, 0.5f, 0.5153f, 0.3f, 0.5f, 0.5f, 0.5f, 0.2513f, 0.0625f}));
  EXPECT_EQ(reverb("dialog", "Auditorium"), (Values{0.013f, 0.159f, 1, 0.9f, 0, 0.5201f, 0.4166f, 0.46f, 0.5f, 0.73f, 0.16f, 0.7538f, 0.0312f}));
  EXPECT_EQ(reverb("ambience", "Wind Effect"), (Values{0.196f, 0.6897f, 0.697f, 0.25f, 0.5f, 0.5f, 0.2347f, 0.52f, 0.5f, 0.75f, 0.25f, 0.2513f, 0.0312f}));
  const Values points = {0.0390625f, 0.000834f, 0, 0.004167f, 0.000226f, 0.004688f, 0.75f, 0.005208f, 0.75f, 1, 0.75f};
  // clang-format on
  Values start = Setting(repair, "ReduceRumbleMinSetting");
  Values end = Setting(repair, "ReduceRumbleMaxSetting");
  ASSERT_EQ(start.size(), 266U);
  ASSERT_EQ(end.size(), 266U);
  EXPECT_EQ(Values(end.begin() + fftfilter::kPointCount, end.begin() + fftfilter::kFirstPoint + 10),
            points);
  EXPECT_EQ(start[fftfilter::kFirstPoint + 1], 0.75f);
  EXPECT_EQ(start[fftfilter::kFirstPoint + 3], 0.75f);
  start[fftfilter::kFirstPoint + 1] = end[fftfilter::kFirstPoint + 1];
  start[fftfilter::kFirstPoint + 3] = end[fftfilter::kFirstPoint + 3];
  EXPECT_EQ(start, end);
}

TEST(FactoryTemplates, EverySettingHasAValueForEachParameterOfItsEffect) {
  std::size_t count = 0;
  const auto check = [&count](const orvel::PropList& presets, const std::u16string& componentId) {
    for (const auto& [name, held] : presets) {
      const auto& values = std::get<Values>(held);
      EXPECT_EQ(values.size(), FindEffect(componentId)->parameters.size()) << name;
      EXPECT_TRUE(std::ranges::all_of(values, [](float v) { return v >= 0.0f && v <= 1.0f; }))
          << name;
      ++count;
    }
  };
  check(Presets("dialog", "model_clarity", "EQPresets"), orvel::kGraphicEQ10BandsID);
  for (const char* mode : {"sfx", "dialog", "ambience"}) {
    check(Presets(mode, "model_soundeffects", "ReverbPresets"), orvel::kStudioReverbID);
  }
  EXPECT_EQ(count, 11U + 4U + 8U + 4U);
}

// Over the whole range of every control, with the amount that bends it at both ends and between.
TEST(FactoryTemplates, EveryMappingDrivesAParameterOfItsEffectInsideItsScale) {
  constexpr int kSteps = 40;
  for (const auto& preset : Templates()) {
    for (const auto& [modelID, configuration] : preset.PresetData.Models) {
      const auto definition = Build(modelID, configuration);
      for (const auto& control : definition.GetControlDefinitions()) {
        const EffectDescription* effect = FindEffect(control.GetComponentID());
        ASSERT_NE(effect, nullptr) << control.GetControlKey();
        for (const auto& [paramID, mappings] : control.GetParameterMap()) {
          for (orvel::ParameterMapping mapping : mappings) {
            EXPECT_LT(mapping.GetParamIndex(), effect->parameters.size())
                << control.GetControlKey();
            for (int step = 0; step <= kSteps * 3; ++step) {
              mapping.SetModifierValue(static_cast<float>(step % 3) / 2.0f);
              const float value = mapping.FromNormalized(static_cast<float>(step / 3) / kSteps);
              EXPECT_TRUE(value >= 0.0f && value <= 1.0f)
                  << control.GetControlKey() << " " << mapping.GetParamIndex() << ": " << value;
            }
          }
        }
      }
    }
  }
}

TEST(EffectCatalogue, EveryEffectStartsInsideItsRanges) {
  for (const std::u16string& id :
       {orvel::kHardLimiterID, orvel::kStereoExpanderID, orvel::kAdaptiveNoiseReductionID,
        orvel::kIzotopeDeHummerID, orvel::kIzotopeDeEsserID, orvel::kFFTFilterID,
        orvel::kDynamicsID, orvel::kGraphicEQ10BandsID, orvel::kIzotopeVocalEnhancerID,
        orvel::kStudioReverbID}) {
    const EffectDescription* effect = FindEffect(id);
    ASSERT_NE(effect, nullptr);
    const Values initial = InitialParameters(*effect);
    for (std::size_t index = 0; index < initial.size(); ++index) {
      const EffectParameter& parameter = effect->parameters[index];
      EXPECT_TRUE(initial[index] >= 0.0f && initial[index] <= 1.0f)
          << effect->name << parameter.name;
      EXPECT_NEAR(FromEffectScale(parameter, ToEffectScale(parameter, initial[index])),
                  initial[index], 1e-6);
    }
  }
}

/// In dB at full amount, by band.
std::vector<double> Gains(const Values& equalizer) {
  using namespace graphicequalizer;
  const auto parameters = FindEffect(orvel::kGraphicEQ10BandsID)->parameters;
  const double range = ToEffectScale(parameters[kRange], equalizer[kRange]);
  std::vector<double> gains;
  for (std::size_t band = kFirstBand; band < kFirstBand + kBands; ++band) {
    gains.push_back(range * ToEffectScale(parameters[band], equalizer[band]) / 100.0);
  }
  return gains;
}

TEST(FactoryTemplates, SmallLoudspeakersLoseLowAndHighTones) {
  constexpr std::size_t kBand125 = 2;
  constexpr std::size_t kBand1k = 5;
  constexpr std::size_t kBand8k = 8;
  const orvel::PropList presets = Presets("dialog", "model_clarity", "EQPresets");
  for (const char* name : {"Intercom", "Old Radio", "On the Telephone"}) {
    const std::vector<double> gains = Gains(Setting(presets, name));
    for (std::size_t band = 0; band < gains.size(); ++band) {
      if (band <= kBand125 || band >= kBand8k) {
        EXPECT_LE(gains[band], gains[kBand1k] - 15.0) << name << " band " << band;
      }
    }
  }
}

TEST(FactoryUserPresets, StandModeByModeUnderTheirTemplate) {
  std::vector<std::string> titles;
  for (const auto& preset : UserPresets()) {
    const orvel::UserPresetData& data = preset.PresetData;
    titles.push_back(data.ModeID + ": " + preset.Name.substr(preset.Name.find('=') + 1));
    const auto owner = std::ranges::find(Templates(), data.Config, &orvel::ConfigPreset::Guid);
    ASSERT_NE(owner, Templates().end()) << preset.Name;
    EXPECT_EQ(owner->PresetData.ModeID, data.ModeID);
    EXPECT_THAT(
        preset.Name,
        ::testing::MatchesRegex("\\$\\$\\$/app/Presets/(Orvel/[A-Za-z0-9]+|Default)PresetName=.+"));
  }
  // clang-format off
  EXPECT_THAT(titles, ElementsAre(
      "ambience: (Default)", "ambience: Focused", "ambience: From Outside", "ambience: Room Tone", "ambience: Wide and Deep",
      "dialog: (Default)", "dialog: Background Walla Walla", "dialog: Balanced Female Voice", "dialog: Balanced Male Voice",
      "dialog: Clean Up Noisy Dialogue", "dialog: From Outside a Building", "dialog: From the Radio", "dialog: From the Telephone",
      "dialog: From the Television", "dialog: In a Large Room", "dialog: In a Small Room", "dialog: Make Close Up",
      "dialog: Make Distant", "dialog: Make Medium Shot", "dialog: Over the Intercom", "dialog: Podcast Voice",
      "music: (Default)", "music: Balanced Background Music", "music: Remix to 30 Seconds", "music: Remix to 60 Seconds", "music: Remix to 90 Seconds",
      "sfx: (Default)", "sfx: Explosion", "sfx: From Outside", "sfx: From the Left", "sfx: From the Right", "sfx: In a Large Room",
      "sfx: Make Close Up", "sfx: Make Distant", "sfx: Make Medium Shot"));
  // clang-format on
}

TEST(FactoryUserPresets, HoldAListForEachSectionOfTheModeInsideItsRanges) {
  for (const auto& preset : UserPresets()) {
    const orvel::UserPresetData& data = preset.PresetData;
    EXPECT_EQ(data.Models.size(), Template(data.ModeID).Models.size()) << preset.Name;
    for (const auto& [modelID, values] : data.Models) {
      const auto definition = Build(modelID, Configuration(data.ModeID, modelID));
      auto value = values.begin();
      for (const auto& param : definition.GetParamDefinitions()) {
        if (param.HasFlag(orvel::kParamFlag_NotStored) || value == values.end()) {
          continue;
        }
        EXPECT_GE(*value, param.minValue) << preset.Name << " " << param.key;
        EXPECT_LE(*value, param.maxValue) << preset.Name << " " << param.key;
        if (param.HasFlag(orvel::kParamFlag_TwoValued)) {
          EXPECT_TRUE(*value == param.minValue || *value == param.maxValue) << param.key;
        }
        EXPECT_FALSE(param.HasFlag(orvel::kParamFlag_Trigger) && *value != 0.0f) << param.key;
        ++value;
      }
      EXPECT_EQ(value, values.end())
          << preset.Name << " " << modelID << " holds more than is stored";
    }
  }
}

TEST(FactoryUserPresets, TheDefaultsSwitchNothingOn) {
  const auto& dialog = UserPreset("dialog", "(Default)").Models;
  EXPECT_EQ(dialog.at("model_clarity"), (Values{1, 0, 3, 0, 5, 0, 0, 0}));
  EXPECT_EQ(dialog.at("model_restoration"), (Values{1, 0, 5, 0, 7.1430006f, 0, 5, 0, 5, 60}));
  for (const auto& mode : Modes()) {
    for (const auto& [modelID, values] : UserPreset(mode.modeID, "(Default)").Models) {
      const auto definition = Build(modelID, Configuration(mode.modeID, modelID));
      for (const auto& control : definition.GetControlDefinitions()) {
        EXPECT_EQ(values[static_cast<std::size_t>(control.GetEnableParamID())], 0.0f) << modelID;
      }
    }
  }
}

TEST(FactoryUserPresets, MatchTheLoudnessBeforeTheySetTheVolume) {
  for (const auto& preset : UserPresets()) {
    const auto& models = preset.PresetData.Models;
    const bool setsVolume = models.at("model_volume")[1] != 0.0f;
    EXPECT_TRUE(!setsVolume || models.at("model_loudness")[1] == 1.0f) << preset.Name;
  }
}

TEST(FactoryUserPresets, DoWhatTheirNamesSay) {
  for (const int seconds : {30, 60, 90}) {
    const auto title = "Remix to " + std::to_string(seconds) + " Seconds";
    EXPECT_EQ(UserPreset("music", title).Models.at("model_duration"),
              (Values{1, static_cast<float>(seconds), 0, 0}));
  }
  const auto& left = UserPreset("sfx", "From the Left").Models;
  auto mirrored = UserPreset("sfx", "From the Right").Models;
  EXPECT_EQ(left.at("model_pan"), (Values{1, -5}));
  mirrored["model_pan"][1] *= -1.0f;
  EXPECT_EQ(left, mirrored);
  EXPECT_LT(UserPreset("ambience", "Focused").Models.at("model_stereowidth")[2], 10.0f / 3.0f);
  EXPECT_GT(UserPreset("ambience", "Wide and Deep").Models.at("model_stereowidth")[2],
            10.0f / 3.0f);
}

TEST(FactoryUserPresets, WhatIsFartherAwayIsQuieterAndMoreReverberant) {
  for (const char* mode : {"dialog", "sfx"}) {
    double closerVolume = 100.0;
    double closerReverb = -1.0;
    for (const char* title : {"Make Close Up", "Make Medium Shot", "Make Distant"}) {
      const auto& models = UserPreset(mode, title).Models;
      const Values& effects = models.at("model_soundeffects");
      const double reverb = effects[1] != 0.0f ? effects[2] : 0.0f;
      EXPECT_EQ(models.at("model_loudness")[1], 1.0f) << "the distances start at one level";
      EXPECT_LT(models.at("model_volume")[2], closerVolume) << mode << " " << title;
      EXPECT_GT(reverb, closerReverb) << mode << " " << title;
      closerVolume = models.at("model_volume")[2];
      closerReverb = reverb;
    }
  }
}

}  // namespace
}  // namespace orvelhost::testing
