#include "host/session/setting.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <charconv>
#include <cmath>
#include <sstream>
#include <string_view>

namespace orvelhost {
namespace {

/// A section that this host can carry out.
struct Section {
  const char* name;
  const char* modelID;
  int amountID;      ///< the parameter that carries the unit
  const char* unit;  ///< with a space before it
};

// clang-format off
constexpr std::array<Section, 3> kSections = {{
    // name          model id             amount                                                     unit
    {"volume",       "model_volume",      orvel::SectionModelVolumeParams::kVolume,                  " dB"},
    {"stereowidth",  "model_stereowidth", orvel::SectionModelStereoWidthParams::kAdjustStereoWidth,  ""},
    {"pan",          "model_pan",         orvel::SectionModelPanParams::kPan,                        ""},
}};
// clang-format on

orvel::SectionDefinition Definition(const Section& section) {
  orvel::SectionDefinition definition;
  [[maybe_unused]] const bool known =
      orvel::factory::CreateSectionModelDefinition(section.modelID, orvel::PropList(), definition);
  assert(known);
  return definition;
}

/// The others follow from the clip.
bool IsSettable(const orvel::ParamDefinition& param) {
  return !param.HasFlag(orvel::kParamFlag_NotStored);
}

std::string DescribeRange(const Section& section, const orvel::ParamDefinition& param) {
  if (param.HasFlag(orvel::kParamFlag_TwoValued)) {
    return "0 or 1";
  }
  std::ostringstream text;
  text << param.minValue << " to " << param.maxValue
       << (param.id == section.amountID ? section.unit : "");
  return text.str();
}

std::string SectionNames() {
  std::string names;
  for (const Section& section : kSections) {
    names += std::string(names.empty() ? "" : ", ") + section.name;
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

bool ParseNumber(std::string_view text, double& number) {
  if (text.starts_with('+')) {
    text.remove_prefix(1);
  }
  const auto [end, status] = std::from_chars(text.data(), text.data() + text.size(), number);
  return status == std::errc() && end == text.data() + text.size() && std::isfinite(number);
}

bool ParseSetting(const std::string& text, Setting& setting, std::string& error) {
  const std::size_t dot = text.find('.');
  const std::size_t equals = text.find('=');
  if (dot == std::string::npos || equals == std::string::npos || equals < dot) {
    error = "no setting is written '" + text + "'; write as in volume.Volume=-6";
    return false;
  }
  const std::string sectionName = text.substr(0, dot);
  const auto section = std::ranges::find_if(
      kSections, [&](const Section& candidate) { return candidate.name == sectionName; });
  if (section == kSections.end()) {
    error = "there is no section '" + sectionName + "'; the sections are " + SectionNames();
    return false;
  }
  const orvel::SectionDefinition definition = Definition(*section);
  const std::vector<orvel::ParamDefinition>& params = definition.GetParamDefinitions();
  const std::string paramName = text.substr(dot + 1, equals - dot - 1);
  const auto param = std::ranges::find(params, paramName, &orvel::ParamDefinition::name);
  if (param == params.end() || !IsSettable(*param)) {
    error = "nothing to set is called '" + sectionName + "." + paramName + "'; " + sectionName +
            " has " + ParamNames(definition);
    return false;
  }
  double value = 0.0;
  const std::string valueText = text.substr(equals + 1);
  if (!ParseNumber(valueText, value) || value < static_cast<double>(param->minValue) ||
      value > static_cast<double>(param->maxValue) ||
      (param->HasFlag(orvel::kParamFlag_TwoValued) && value != 0.0 && value != 1.0)) {
    error = sectionName + "." + paramName + " takes " + DescribeRange(*section, *param) +
            ", not '" + valueText + "'";
    return false;
  }
  setting = {section->modelID, param->id, static_cast<float>(value)};
  return true;
}

bool Sets(const std::vector<Setting>& settings, const std::string& modelID, int paramID) {
  return std::ranges::any_of(settings, [&](const Setting& setting) {
    return setting.modelID == modelID && setting.paramID == paramID;
  });
}

/// The settings that switch on the controls whose values are set.
std::vector<Setting> ImpliedSwitches(const std::vector<Setting>& settings) {
  std::vector<Setting> implied;
  for (const Setting& setting : settings) {
    orvel::SectionDefinition definition;
    orvel::factory::CreateSectionModelDefinition(setting.modelID, orvel::PropList(), definition);
    const orvel::ControlDefinition* control = nullptr;
    const orvel::ParamType type =
        std::as_const(definition).GetParamTypeAndControl(setting.paramID, &control);
    if (type != orvel::kMappedParam && type != orvel::kModifierParam) {
      continue;
    }
    const int switchID = control->GetEnableParamID();
    if (!Sets(settings, setting.modelID, switchID) && !Sets(implied, setting.modelID, switchID)) {
      implied.push_back({setting.modelID, switchID, 1.0f});
    }
  }
  return implied;
}

}  // namespace

bool ParseSettings(const std::vector<std::string>& texts, std::vector<Setting>& settings,
                   std::string& error) {
  std::vector<Setting> parsed;
  for (const std::string& text : texts) {
    Setting setting;
    if (!ParseSetting(text, setting, error)) {
      return false;
    }
    if (Sets(parsed, setting.modelID, setting.paramID)) {
      error = text.substr(0, text.find('=')) + " is set twice";
      return false;
    }
    parsed.push_back(setting);
  }
  std::ranges::copy(ImpliedSwitches(parsed), std::back_inserter(parsed));
  settings = parsed;
  return true;
}

std::string DescribeSettings() {
  std::ostringstream text;
  for (const Section& section : kSections) {
    const orvel::SectionDefinition definition = Definition(section);
    for (const orvel::ParamDefinition& param : definition.GetParamDefinitions()) {
      if (!IsSettable(param)) {
        continue;
      }
      std::string name = std::string(section.name) + "." + param.name;
      std::string range = DescribeRange(section, param);
      name.resize(std::max<std::size_t>(name.size(), 34), ' ');
      range.resize(std::max<std::size_t>(range.size(), 14), ' ');
      text << "  " << name << range << "default " << param.defaultValue << "\n";
    }
  }
  return text.str();
}

void ApplySettings(const std::vector<Setting>& settings, const Host& host,
                   const boost::intrusive_ptr<Clip>& clip) {
  std::string mode;
  clip->GetAdjustmentsMode(mode);
  for (const Section& section : kSections) {
    if (std::ranges::find(settings, section.modelID, &Setting::modelID) == settings.end()) {
      continue;
    }
    boost::intrusive_ptr<orvel::SectionModelInterface> model;
    orvel::factory::CreateModelForClips(section.modelID, mode, orvel::PropList(), host.GetSession(),
                                        {clip}, false, model);
    assert(model);
    std::map<int, float> values;
    for (const Setting& setting : settings) {
      if (setting.modelID == section.modelID) {
        model->ToNormalized(setting.paramID, setting.physical, values[setting.paramID]);
      }
    }
    [[maybe_unused]] const int status = model->SetParamsNormalized(values);
    assert(status == orvel::kStatus_Success);
  }
}

}  // namespace orvelhost
