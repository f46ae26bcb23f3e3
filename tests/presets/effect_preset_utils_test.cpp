#include "orvel/presets/effect_preset_utils.h"

#include <gmock/gmock.h>

#include "orvel/core/audio_filter.h"

namespace orvel::presetutils {
namespace {

using teskaudiofilterhost::AudioFilter;
using teskaudiofilterhost::PresetList;
using ::testing::ElementsAre;

struct Reverb : AudioFilter {
  boost::intrusive_ptr<PresetList> GetPresetList() const override {
    boost::intrusive_ptr<PresetList> presets(new PresetList);
    presets->AddPreset(u"Plate", {0.1f, 0.2f});
    presets->AddPreset(u"Hall", {0.5f, 0.6f, 0.7f});
    return presets;
  }
};

struct Bare : AudioFilter {
  boost::intrusive_ptr<PresetList> GetPresetList() const override { return nullptr; }
};

class EffectPresetUtils : public ::testing::Test {
 protected:
  EffectPresetUtils() {
    teskaudiofilterhost::utility::RegisterAudioFilterFactory(
        [](const std::u16string& id) -> boost::intrusive_ptr<AudioFilter> {
          if (id == u"reverb") return new Reverb;
          return id == u"bare" ? new Bare : nullptr;
        });
  }
  ~EffectPresetUtils() override { teskaudiofilterhost::utility::RegisterAudioFilterFactory({}); }
};

PropList TableOf(std::initializer_list<const char*> names) {
  PropList configuration;
  configuration.SetValue("T", PropList());
  for (const char* name : names) AddPresetToConfiguration(configuration, "T", {1.0f}, name);
  return configuration;
}

TEST_F(EffectPresetUtils, ATableIsFilledFromTheEffectAndEditedByName) {
  PropList configuration;
  AddAllEffectPresets(configuration, "T", u"bare");
  PropList table;
  EXPECT_TRUE(configuration.GetValue("T", table)) << "empty but present";
  AddAllEffectPresets(configuration, "T", u"reverb");
  AddPresetToConfiguration(configuration, "T", {0.9f}, "Plate");
  std::list<float> values = {7.0f};
  EXPECT_TRUE(GetPresetFromConfiguration(configuration, "T", "Hall", values));
  EXPECT_THAT(values, ElementsAre(0.5f, 0.6f, 0.7f));
  EXPECT_TRUE(GetPresetFromConfiguration(configuration, "T", "Plate", values));
  EXPECT_THAT(values, ElementsAre(0.9f));
  RemovePresetFromConfiguration(configuration, "T", "Plate");
  RemovePresetFromConfiguration(configuration, "None", "Plate");
  EXPECT_FALSE(configuration.GetValue("None", table));
  EXPECT_FALSE(GetPresetFromConfiguration(configuration, "T", "Plate", values));
  EXPECT_FALSE(GetPresetFromConfiguration(configuration, "None", "Hall", values));
  std::set<std::u16string> names = {u"before"};
  GetConfigPresetNames(u"none", names);
  EXPECT_THAT(names, ElementsAre(u"before"));
  EXPECT_FALSE(GetConfigPreset(u"none", u"Hall", values));
  EXPECT_FALSE(GetConfigPreset(u"reverb", u"Cave", values));
  EXPECT_THAT(values, ElementsAre(0.9f)) << "a failure leaves the values alone";
}

TEST_F(EffectPresetUtils, ValuesFindThePresetThatTheyAreCloseTo) {
  const struct {
    std::list<float> values;
    bool found;
    std::u16string name;
  } rows[] = {
      {{0.5005f, 0.5995f, 0.7f}, true, u"Hall"},
      {{0.5f, 0.602f, 0.7f}, false, u"\"Custom\""},
      {{0.5f, 0.6f}, false, u"\"Custom\""},  // fewer are not the same
  };
  for (const auto& row : rows) {
    std::u16string name = u"before";
    EXPECT_EQ(GetPresetNameForConfig(u"reverb", row.values, name), row.found);
    EXPECT_EQ(name, row.name);
  }
}

TEST_F(EffectPresetUtils, ASelectorFollowsItsEntryIntoAnotherTable) {
  const PropList old = TableOf({"a", "b", "c"});
  const PropList changed = TableOf({"0", "b", "c"});
  // Where each value leads; -1 where its entry is gone.
  const std::pair<float, float> rows[] = {
      {1.0f, 1.0f}, {1.6f, 2.0f}, {99.0f, 2.0f}, {0.0f, -1.0f}, {std::nanf(""), -1.0f}};
  for (const auto& [value, expected] : rows) {
    std::vector<float> values = {1.0f, value};
    EXPECT_EQ(MigratePresetControlBasedPreset(old, changed, "T", 1, values), expected >= 0.0f);
    EXPECT_TRUE(expected < 0.0f || values[1] == expected) << value;
  }
  std::vector<float> values = {1.0f};
  EXPECT_FALSE(MigratePresetControlBasedPreset(old, changed, "T", 2, values));
  EXPECT_FALSE(MigratePresetControlBasedPreset({}, changed, "T", 0, values));
  EXPECT_TRUE(MigratePresetControlBasedPreset(old, TableOf({"b"}), "T", 0, values));
  EXPECT_EQ(values[0], 0.0f);
}

}  // namespace
}  // namespace orvel::presetutils
