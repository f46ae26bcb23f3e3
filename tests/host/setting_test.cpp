#include "host/catalogue/setting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvelhost::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::UnorderedElementsAre;
using Volume = orvel::SectionModelVolumeParams;
using Width = orvel::SectionModelStereoWidthParams;

std::vector<Setting> Parse(const std::vector<std::string>& texts) {
  std::vector<Setting> settings;
  std::string error;
  EXPECT_TRUE(ParseSettings(texts, SettableSections(""), settings, error)) << error;
  return settings;
}

TEST(Settings, AnAmountSwitchesItsControlOnUnlessTheSwitchIsSet) {
  EXPECT_THAT(Parse({"volume.Volume=-6"}),
              UnorderedElementsAre(Setting{"model_volume", Volume::kVolume, -6.0f},
                                   Setting{"model_volume", Volume::kEnableVolume, 1.0f},
                                   Setting{"model_volume", Volume::kEnabled, 1.0f}));
  EXPECT_THAT(Parse({"stereowidth.EnableStereoWidth=0", "stereowidth.AdjustStereoWidth=+1e1"}),
              UnorderedElementsAre(Setting{"model_stereowidth", Width::kEnableStereoWidth, 0.0f},
                                   Setting{"model_stereowidth", Width::kAdjustStereoWidth, 10.0f},
                                   Setting{"model_stereowidth", Width::kEnabled, 1.0f}));
}

TEST(Settings, AFaultIsNamedAndNothingIsTaken) {
  const std::pair<const char*, const char*> cases[] = {
      {"volume.Volume", "no setting"},
      {"volum.Volume=3", "sections are loudness, restoration"},
      {"volume.volume=3", "Enabled, EnableVolume, Volume"},
      {"pan.PanNotSupported=1", "Enabled, Pan"},
      {"volume.Volume=", "-15 to 6 dB"},
      {"volume.Volume=3dB", "-15 to 6 dB"},
      {"volume.Volume=nan", "-15 to 6 dB"},
      {"volume.Volume=6.001", "-15 to 6 dB"},
      {"volume.EnableVolume=0.5", "0 or 1"},
      {"restoration.HumFrequency=55", "50 or 60 Hz"},
      {"loudness.ResetLoudnessMeasurements=1", "loudness has Enabled, AutoLoudness"},
  };
  for (const auto& [text, cause] : cases) {
    std::vector<Setting> settings = {{"untouched", 0, 0.0f}};
    std::string error;
    EXPECT_FALSE(ParseSettings({"pan.Pan=1", text}, SettableSections(""), settings, error)) << text;
    EXPECT_THAT(error, HasSubstr(cause));
    EXPECT_EQ(error.find('\n'), std::string::npos);
    EXPECT_EQ(settings.size(), 1U);
  }
  std::vector<Setting> settings;
  std::string error;
  EXPECT_FALSE(ParseSettings({"pan.Pan=1", "pan.Pan=1"}, SettableSections(""), settings, error));
  EXPECT_THAT(error, HasSubstr("twice"));
}

}  // namespace
}  // namespace orvelhost::testing
