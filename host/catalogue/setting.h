#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/session/host.h"

namespace orvelhost {

/// The value of one section parameter, in the parameter's unit.
struct Setting {
  std::string modelID;
  int paramID;
  float physical;

  friend bool operator==(const Setting&, const Setting&) = default;
};

/// What a parameter takes, in its unit: "-15 to 6 dB", "0 or 1".
std::string DescribeRange(const std::string& modelID, const orvel::ParamDefinition& param);
/// A value within the range; of a switch one of its two, of what has steps a whole one.
bool IsInRange(const orvel::ParamDefinition& param, double value);

/// Reads a finite number, which may have a sign, and nothing else.
bool ParseNumber(std::string_view text, double& number);

/// The sections that can be set: those of an adjustments mode in its order, as it is configured
/// now; or all of them when `mode` is empty, then as the library builds them without a
/// configuration.
std::vector<orvel::SectionDefinition> SettableSections(const std::string& mode);

/// Reads settings written as "section.Parameter=value": the section's model id without "model_",
/// the parameter's name in the section's table, a number in its unit. A value that a control maps
/// also switches that control on, and whatever is set or switched on its section, unless the switch
/// is among the settings itself.
///
/// False when a text does not read so, a name is unknown, a value is outside its range or no value
/// of its switch, or a parameter is set twice; `error` then is one line that says which and why,
/// and `settings` stays as it was.
bool ParseSettings(const std::vector<std::string>& texts,
                   const std::vector<orvel::SectionDefinition>& sections,
                   std::vector<Setting>& settings, std::string& error);

/// A line for each parameter that can be set: its name, range, unit and default.
std::string DescribeSettings(const std::string& mode);

/// Writes the preset, if there is one, and then the settings into the clip, through a model of each
/// section that is concerned. The models are given back: while they live they follow what is
/// measured on the clip.
std::vector<boost::intrusive_ptr<orvel::SectionModelInterface>> ApplySettings(
    const std::optional<orvel::UserPreset>& preset, const std::vector<Setting>& settings,
    const std::string& mode, const Host& host, const boost::intrusive_ptr<Clip>& clip);

}  // namespace orvelhost
