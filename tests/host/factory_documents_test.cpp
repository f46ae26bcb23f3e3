#include "host/factory/factory_documents.h"

#include <set>
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/effects/effect_catalogue.h"
#include "host/factory/factory_tables.h"
#include "orvel/orvel.h"
#include "tests/host/support/audio.h"

namespace orvelhost::testing {
namespace {

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

const orvel::ConfigPreset& Template(const std::string& mode) {
  for (const auto& preset : Templates()) {
    if (preset.PresetData.ModeID == mode) {
      return preset;
    }
  }
  throw std::runtime_error("no template for " + mode);
}

orvel::SectionDefinition Build(const std::string& mode, const std::string& modelID) {
  orvel::SectionDefinition definition;
  EXPECT_TRUE(orvel::factory::CreateSectionModelDefinition(
      modelID, Template(mode).PresetData.Models.at(modelID), definition));
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
  const std::string manual = ReadBytes(ORVEL_TEST_DATA_DIR "/../../docs/factory-presets.md");
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

// Over the whole range of every control, with the amount that bends it at both ends and between.
TEST(FactoryTemplates, EveryMappingDrivesAParameterOfItsEffectInsideItsScale) {
  constexpr int kSteps = 40;
  for (const auto& preset : Templates()) {
    for (const auto& [modelID, configuration] : preset.PresetData.Models) {
      const auto definition = Build(preset.PresetData.ModeID, modelID);
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

TEST(FactoryUserPresets, HoldAListForEachSectionOfTheModeInsideItsRanges) {
  std::set<orvel::Guid> guids;
  for (const auto& preset : UserPresets()) {
    const orvel::UserPresetData& data = preset.PresetData;
    EXPECT_TRUE(guids.insert(preset.Guid).second) << preset.Name;
    EXPECT_EQ(data.Config, Template(data.ModeID).Guid) << preset.Name;
    EXPECT_EQ(data.Models.size(), Template(data.ModeID).PresetData.Models.size()) << preset.Name;
    EXPECT_TRUE(data.Models.at("model_volume")[1] == 0.0f ||
                data.Models.at("model_loudness")[1] == 1.0f)
        << preset.Name << " sets the volume of an unknown loudness";
    for (const auto& [modelID, values] : data.Models) {
      const auto definition = Build(data.ModeID, modelID);
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
      if (!preset.Name.ends_with("=(Default)")) continue;
      for (const auto& control : definition.GetControlDefinitions()) {
        EXPECT_EQ(values[static_cast<std::size_t>(control.GetEnableParamID())], 0.0f) << modelID;
      }
    }
  }
}

}  // namespace
}  // namespace orvelhost::testing
