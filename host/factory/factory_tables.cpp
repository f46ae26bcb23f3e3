#include "host/factory/factory_tables.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <iomanip>
#include <optional>
#include <span>
#include <sstream>

#include "host/effects/effect_catalogue.h"
#include "host/factory/adjustments_modes.h"
#include "host/factory/equalizer_presets.h"
#include "host/factory/looks.h"
#include "host/factory/reverb_presets.h"

namespace orvelhost {
namespace {

using Cells = std::vector<std::string>;

std::string Row(const Cells& cells) {
  std::string row = "|";
  for (const std::string& cell : cells) {
    row += " " + cell + " |";
  }
  return row + "\n";
}

std::string Header(const Cells& cells) { return Row(cells) + Row(Cells(cells.size(), "---")); }

std::string Number(double value) {
  std::ostringstream text;
  text << value;
  return text.str();
}

std::string Decibels(double factor) {
  std::ostringstream text;
  text << std::showpos << std::fixed << std::setprecision(1) << 20.0 * std::log10(factor) << " dB";
  return text.str();
}

std::string Heading(const EffectParameter& parameter) {
  const std::string unit = parameter.unit;
  return parameter.name + (unit.empty() ? "" : ", " + unit);
}

std::span<const EffectParameter> Parameters(const std::u16string& componentId) {
  const EffectDescription* effect = FindEffect(componentId);
  assert(effect != nullptr);
  return effect->parameters;
}

std::string EqualizerTable() {
  using namespace graphicequalizer;
  const auto parameters = Parameters(orvel::kGraphicEQ10BandsID);
  Cells cells = {"Curve"};
  for (const EffectParameter& band : parameters.subspan(kFirstBand, kBands)) {
    cells.emplace_back(band.name);
  }
  cells.push_back(Heading(parameters[kRange]));
  cells.push_back(Heading(parameters[kAccuracy]));
  std::string table = Header(cells);
  for (const EqualizerPreset& preset : EqualizerPresets()) {
    cells = {preset.title};
    std::ranges::transform(preset.gains, std::back_inserter(cells), &Number);
    cells.push_back(Number(preset.range));
    cells.push_back(Number(preset.accuracy));
    table += Row(cells);
  }
  return table;
}

std::string ReverbTable() {
  Cells cells = {"Mode", "Reverb"};
  std::ranges::transform(Parameters(orvel::kStudioReverbID), std::back_inserter(cells), &Heading);
  std::string table = Header(cells);
  for (const ReverbPreset& preset : ReverbPresets()) {
    cells = {preset.mode, preset.title};
    std::ranges::transform(preset.settings, std::back_inserter(cells), &Number);
    table += Row(cells);
  }
  return table;
}

/// The title of the preset of this word.
template <typename Presets>
std::string Title(const Presets& presets, const std::string& word) {
  const auto found =
      std::ranges::find_if(presets, [&](const auto& preset) { return preset.word == word; });
  assert(found != presets.end());
  return found->title;
}

void AddAmount(Cells& parts, const char* name, const std::optional<float>& amount,
               const char* unit = "") {
  if (amount) {
    parts.push_back(std::string(name) + " " + Number(*amount) + unit);
  }
}

std::string Describe(const Look& look) {
  Cells parts;
  if (look.autoLoudness) {
    parts.emplace_back("auto loudness");
  }
  AddAmount(parts, "noise", look.noise);
  AddAmount(parts, "hum", look.hum);
  AddAmount(parts, "sibilance", look.sibilance);
  AddAmount(parts, "rumble", look.rumble);
  AddAmount(parts, "dynamics", look.dynamics);
  if (look.equalizer) {
    AddAmount(parts, ("EQ " + Title(EqualizerPresets(), look.equalizer->word)).c_str(),
              look.equalizer->amount);
  }
  if (look.voice) {
    parts.emplace_back(look.voice == Voice::kLow ? "low voice" : "high voice");
  }
  if (look.reverb) {
    const float amount = look.reverb->amount;
    AddAmount(parts, ("reverb " + Title(ReverbPresets(), look.reverb->word)).c_str(), amount);
    parts.back() += " (wet to dry " + Decibels(amount / (10.0 - amount)) + ")";
  }
  AddAmount(parts, "remix to", look.remixSeconds, " s");
  if (look.pan != 0.0f) {
    parts.push_back("pan " + Number(std::abs(look.pan)) + (look.pan < 0.0f ? " left" : " right"));
  }
  if (look.width) {
    AddAmount(parts, "width", look.width);
    parts.back() += " (side " + Decibels(*look.width * 3.0 / 10.0) + ")";
  }
  AddAmount(parts, "volume", look.volume, " dB");
  std::string text;
  for (const std::string& part : parts) {
    text += (text.empty() ? "" : ", ") + part;
  }
  return text.empty() ? "nothing" : text;
}

std::string LookTable(const std::string& mode) {
  std::string table = Header({"Preset", "Switches on"});
  for (const Look& look : Looks()) {
    if (look.mode == mode) {
      table += Row({look.title, Describe(look)});
    }
  }
  return table;
}

}  // namespace

std::vector<std::string> FactoryTables() {
  std::vector<std::string> tables = {EqualizerTable(), ReverbTable()};
  for (const AdjustmentsMode& mode : AdjustmentsModes()) {
    tables.push_back(LookTable(mode.id));
  }
  return tables;
}

}  // namespace orvelhost
