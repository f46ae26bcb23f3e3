#include "host/factory/user_presets.h"

#include <algorithm>
#include <cassert>
#include <map>

#include "host/factory/adjustments_modes.h"
#include "host/factory/templates.h"

namespace orvelhost {
namespace {

constexpr float kOn = 1.0f;
constexpr float kOff = 0.0f;

// Where the sliders of tools stand that are switched off.
constexpr float kHalf = 5.0f;
constexpr float kHum = 7.1430006f;
constexpr float kDynamics = 3.0f;
constexpr float kUnchangedWidth = 10.0f / 3.0f;
constexpr float kMainsFrequency = 60.0f;  // in Hz

// Of the duration section.
constexpr float kRemix = 0.0f;
constexpr float kStretch = 1.0f;

using Values = std::vector<float>;

/// A switch and its slider.
void Append(Values& values, const std::optional<float>& amount, float amountWhenOff) {
  values.insert(values.end(), {amount ? kOn : kOff, amount.value_or(amountWhenOff)});
}

/// A switch, its slider and the selector of a preset.
void Append(Values& values, const std::optional<PresetAmount>& choice,
            const orvel::PropList& presets) {
  if (!choice) {
    values.insert(values.end(), {kOff, kHalf, 0.0f});
    return;
  }
  const std::string tail = std::string("/") + choice->word + "=";
  const auto found = std::ranges::find_if(
      presets, [&](const auto& entry) { return entry.first.find(tail) != std::string::npos; });
  assert(found != presets.end());
  values.insert(values.end(),
                {kOn, choice->amount, static_cast<float>(std::distance(presets.begin(), found))});
}

orvel::PropList Presets(const std::string& mode, const std::string& modelID,
                        const std::string& key) {
  const auto& models = FactoryTemplate(mode).PresetData.Models;
  orvel::PropList presets;
  if (const auto model = models.find(modelID); model != models.end()) {
    model->second.GetValue(key, presets);
  }
  return presets;
}

Values Loudness(const Look& look) { return {kOn, look.autoLoudness ? kOn : kOff}; }

Values Restoration(const Look& look) {
  Values values = {kOn};
  Append(values, look.noise, kHalf);
  Append(values, look.hum, kHum);
  Append(values, look.sibilance, kHalf);
  Append(values, look.rumble, kHalf);
  values.push_back(kMainsFrequency);
  return values;
}

Values Clarity(const Look& look) {
  Values values = {kOn};
  Append(values, look.dynamics, kDynamics);
  Append(values, look.equalizer,
         Presets(look.mode, "model_clarity", orvel::SectionClarityConfig::kConfig_EQPresets));
  values.push_back(look.voice ? kOn : kOff);
  values.push_back(look.voice == Voice::kLow ? 1.0f : 0.0f);
  return values;
}

Values SoundEffects(const Look& look) {
  Values values = {kOn};
  Append(values, look.reverb,
         Presets(look.mode, "model_soundeffects",
                 orvel::SectionSoundEffectsConfig::kConfig_ReverbPresets));
  return values;
}

Values Duration(const Look& look) {
  constexpr float kFavorShorterSegments = kOff;
  return look.remixSeconds ? Values{kOn, *look.remixSeconds, kRemix, kFavorShorterSegments}
                           : Values{kOff, 0.0f, kStretch, kFavorShorterSegments};
}

Values Pan(const Look& look) { return {kOn, look.pan}; }

Values StereoWidth(const Look& look) {
  Values values = {kOn};
  Append(values, look.width, kUnchangedWidth);
  return values;
}

Values Volume(const Look& look) {
  Values values = {kOn};
  Append(values, look.volume, 0.0f);
  return values;
}

/// How the stored list of each section is made. Triggers and what follows them are left out: no
/// preset sets anything off.
const std::map<std::string, Values (*)(const Look&)>& Lists() {
  static const std::map<std::string, Values (*)(const Look&)> lists = {
      {"model_loudness", &Loudness},       {"model_restoration", &Restoration},
      {"model_clarity", &Clarity},         {"model_soundeffects", &SoundEffects},
      {"model_duration", &Duration},       {"model_pan", &Pan},
      {"model_stereowidth", &StereoWidth}, {"model_volume", &Volume},
  };
  return lists;
}

orvel::UserPreset MakePreset(const Look& look) {
  orvel::UserPreset preset;
  preset.Guid = orvel::Guid(look.guid);
  preset.Name = UserPresetKey(look);
  preset.PresetData.Config = FactoryTemplate(look.mode).Guid;
  preset.PresetData.ModeID = look.mode;
  const auto mode =
      std::ranges::find(AdjustmentsModes(), preset.PresetData.ModeID, &AdjustmentsMode::id);
  assert(mode != AdjustmentsModes().end());
  for (const char* modelID : mode->sections) {
    preset.PresetData.Models[modelID] = Lists().at(modelID)(look);
  }
  return preset;
}

}  // namespace

std::string UserPresetKey(const Look& look) {
  const std::string word = look.word;
  return "$$$/app/Presets/" + std::string(word == "Default" ? "" : "Orvel/") + word +
         "PresetName=" + look.title;
}

std::vector<orvel::UserPreset> FactoryUserPresets() {
  std::vector<orvel::UserPreset> presets;
  std::ranges::transform(Looks(), std::back_inserter(presets), &MakePreset);
  return presets;
}

}  // namespace orvelhost
