#include "host/catalogue/setting.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <charconv>
#include <cmath>
#include <sstream>

#include "host/catalogue/mode_catalogue.h"

namespace orvelhost {
namespace {

// clang-format off
/// What the values of parameters count, where they count something.
constexpr struct {
  const char* modelID;
  int paramID;
  const char* unit;
} kUnits[] = {
    { "model_volume",      orvel::SectionModelVolumeParams::kVolume,              " dB" },
    { "model_restoration", orvel::SectionModelRestorationParams::kHumFrequency,   " Hz" },
    { "model_duration",    orvel::SectionModelDurationParams::kTargetDuration,    " s"  },
};

constexpr std::array<const char*, 8> kModelIDs = {
    "model_loudness", "model_restoration", "model_clarity", "model_soundeffects",
    "model_volume",   "model_duration",    "model_pan",     "model_stereowidth",
};
// clang-format on

/// The others follow from the clip, or set something off once.
bool IsSettable(const orvel::ParamDefinition& param) {
  return !param.HasFlag(orvel::kParamFlag_NotStored) && !param.HasFlag(orvel::kParamFlag_Trigger);
}

std::string SectionNames(const std::vector<orvel::SectionDefinition>& sections) {
  std::string names;
  for (const orvel::SectionDefinition& section : sections) {
    names += (names.empty() ? "" : ", ") + ShortSectionName(section.GetModelID());
  }
  return names;
}

std::string ParamNames(const orvel::SectionDefinition& definition) {
  std::string names;
  for (const orvel::ParamDefinition& param : definition.GetParamDefinitions()) {
    if (IsSettable(param)) {
      names += (names.empty() ? "" : ", ") + param.name;
    }
  }
  return names;
}

bool ParseSetting(const std::string& text, const std::vector<orvel::SectionDefinition>& sections,
                  Setting& setting, std::string& error) {
  const std::size_t dot = text.find('.');
  const std::size_t equals = text.find('=');
  if (dot == std::string::npos || equals == std::string::npos || equals < dot) {
    error = "no setting is written '" + text + "'; write as in volume.Volume=-6";
    return false;
  }
  const std::string sectionName = text.substr(0, dot);
  const auto section = std::ranges::find_if(sections, [&](const auto& candidate) {
    return ShortSectionName(candidate.GetModelID()) == sectionName;
  });
  if (section == sections.end()) {
    error = "there is no section '" + sectionName + "' here; the sections are " +
            SectionNames(sections);
    return false;
  }
  const std::vector<orvel::ParamDefinition>& params = section->GetParamDefinitions();
  const std::string paramName = text.substr(dot + 1, equals - dot - 1);
  const auto param = std::ranges::find(params, paramName, &orvel::ParamDefinition::name);
  if (param == params.end() || !IsSettable(*param)) {
    error = "nothing to set is called '" + sectionName + "." + paramName + "'; " + sectionName +
            " has " + ParamNames(*section);
    return false;
  }
  double value = 0.0;
  const std::string valueText = text.substr(equals + 1);
  if (!ParseNumber(valueText, value) || !IsInRange(*param, value)) {
    error = sectionName + "." + paramName + " takes " +
            DescribeRange(section->GetModelID(), *param) + ", not '" + valueText + "'";
    return false;
  }
  setting = {section->GetModelID(), param->id, static_cast<float>(value)};
  return true;
}

bool Sets(const std::vector<Setting>& settings, const std::string& modelID, int paramID) {
  return std::ranges::any_of(settings, [&](const Setting& setting) {
    return setting.modelID == modelID && setting.paramID == paramID;
  });
}

/// The settings that switch on the controls whose values are set, and the sections of what is set
/// or switched on.
std::vector<Setting> ImpliedSwitches(const std::vector<Setting>& settings,
                                     const std::vector<orvel::SectionDefinition>& sections) {
  std::vector<Setting> implied;
  const auto switchOn = [&](const std::string& modelID, int switchID) {
    if (!Sets(settings, modelID, switchID) && !Sets(implied, modelID, switchID)) {
      implied.push_back({modelID, switchID, 1.0f});
    }
  };
  for (const Setting& setting : settings) {
    const auto section =
        std::ranges::find(sections, setting.modelID, &orvel::SectionDefinition::GetModelID);
    const orvel::ControlDefinition* control = nullptr;
    const orvel::ParamType type = section->GetParamTypeAndControl(setting.paramID, &control);
    if (type == orvel::kMappedParam || type == orvel::kModifierParam) {
      switchOn(setting.modelID, control->GetEnableParamID());
    }
    if (type != orvel::kControlEnable || setting.physical >= 0.5f) {
      switchOn(setting.modelID, section->GetEnableParam().id);
    }
  }
  return implied;
}

}  // namespace

std::string DescribeRange(const std::string& modelID, const orvel::ParamDefinition& param) {
  std::ostringstream text;
  text << param.minValue << (param.HasFlag(orvel::kParamFlag_TwoValued) ? " or " : " to ")
       << param.maxValue;
  for (const auto& row : kUnits) {
    if (modelID == row.modelID && param.id == row.paramID) {
      text << row.unit;
    }
  }
  return text.str();
}

bool IsInRange(const orvel::ParamDefinition& param, double value) {
  const auto single = static_cast<float>(value);
  if (param.HasFlag(orvel::kParamFlag_TwoValued)) {
    return single == param.minValue || single == param.maxValue;
  }
  return single >= param.minValue && single <= param.maxValue &&
         (!param.HasFlag(orvel::kParamFlag_Stepped) || single == std::floor(single));
}

bool ParseNumber(std::string_view text, double& number) {
  if (text.starts_with('+') && !text.starts_with("+-")) {
    text.remove_prefix(1);
  }
  const auto [end, status] = std::from_chars(text.data(), text.data() + text.size(), number);
  return status == std::errc() && end == text.data() + text.size() && std::isfinite(number);
}

std::vector<orvel::SectionDefinition> SettableSections(const std::string& mode) {
  if (!mode.empty()) {
    return MakeSections(mode);
  }
  std::vector<orvel::SectionDefinition> sections;
  for (const char* modelID : kModelIDs) {
    orvel::factory::CreateSectionModelDefinition(modelID, orvel::PropList(),
                                                 sections.emplace_back());
  }
  return sections;
}

bool ParseSettings(const std::vector<std::string>& texts,
                   const std::vector<orvel::SectionDefinition>& sections,
                   std::vector<Setting>& settings, std::string& error) {
  std::vector<Setting> parsed;
  for (const std::string& text : texts) {
    Setting setting;
    if (!ParseSetting(text, sections, setting, error)) {
      return false;
    }
    if (Sets(parsed, setting.modelID, setting.paramID)) {
      error = text.substr(0, text.find('=')) + " is set twice";
      return false;
    }
    parsed.push_back(setting);
  }
  std::ranges::copy(ImpliedSwitches(parsed, sections), std::back_inserter(parsed));
  settings = parsed;
  return true;
}

std::string DescribeSettings(const std::string& mode) {
  std::ostringstream text;
  for (const orvel::SectionDefinition& section : SettableSections(mode)) {
    for (const orvel::ParamDefinition& param : section.GetParamDefinitions()) {
      if (!IsSettable(param)) {
        continue;
      }
      std::string name = ShortSectionName(section.GetModelID()) + "." + param.name;
      std::string range = DescribeRange(section.GetModelID(), param);
      name.resize(std::max<std::size_t>(name.size(), 36), ' ');
      range.resize(std::max<std::size_t>(range.size(), 14), ' ');
      text << "  " << name << range << "default " << param.defaultValue << "\n";
    }
  }
  return text.str();
}

std::vector<boost::intrusive_ptr<orvel::SectionModelInterface>> ApplySettings(
    const std::optional<orvel::UserPreset>& preset, const std::vector<Setting>& settings,
    const std::string& mode, const Host& host, const boost::intrusive_ptr<Clip>& clip) {
  std::vector<boost::intrusive_ptr<orvel::SectionModelInterface>> models;
  for (const orvel::SectionDefinition& section : SettableSections(mode)) {
    const std::string& modelID = section.GetModelID();
    std::map<int, float> values;
    const bool isPreset = preset && preset->PresetData.Models.contains(modelID);
    if (!isPreset && std::ranges::find(settings, modelID, &Setting::modelID) == settings.end()) {
      continue;
    }
    boost::intrusive_ptr<orvel::SectionModelInterface> model;
    orvel::factory::CreateModelForClips(modelID, mode, section.GetConfiguration(),
                                        host.GetSession(), {clip}, false, model);
    assert(model);
    if (isPreset) {
      orvel::modelutils::SetParamList(model, preset->PresetData.Models.at(modelID));
    }
    for (const Setting& setting : settings) {
      if (setting.modelID == modelID) {
        model->ToNormalized(setting.paramID, setting.physical, values[setting.paramID]);
      }
    }
    [[maybe_unused]] const int status = model->SetParamsNormalized(values);
    assert(status == orvel::kStatus_Success);
    models.push_back(model);
  }
  return models;
}

}  // namespace orvelhost
