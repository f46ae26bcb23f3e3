#pragma once

#include <string>
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

/// Reads settings written as "section.Parameter=value": the section's model id without "model_",
/// the parameter's name in the section's table, a number in its unit. A value that a control maps
/// also switches that control on, unless the control's switch is among the settings itself.
///
/// False when a text does not read so, a name is unknown, a value is outside its range or no value
/// of its switch, or a parameter is set twice; `error` then is one line that says which and why,
/// and `settings` stays as it was.
bool ParseSettings(const std::vector<std::string>& texts, std::vector<Setting>& settings,
                   std::string& error);

/// A line for each parameter that can be set: its name, range, unit and default.
std::string DescribeSettings();

/// Writes the settings into the clip, through a model of each section that is concerned.
void ApplySettings(const std::vector<Setting>& settings, const Host& host,
                   const boost::intrusive_ptr<Clip>& clip);

}  // namespace orvelhost
