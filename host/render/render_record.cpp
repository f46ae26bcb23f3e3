#include "host/render/render_record.h"

#include <algorithm>
#include <cmath>
#include <sstream>

#include "host/analysis/analysis_report.h"
#include "host/catalogue/json_values.h"
#include "host/effects/effect_catalogue.h"

namespace orvelhost {
namespace {

using teskcore::serialization::AddToObject;
using teskcore::serialization::G_NullType;
using teskcore::serialization::JSONValue;

struct Told {
  EffectParameter parameter;
  double value;
};

/// What the effect is told: its parameters without the points of a curve that are not in use.
std::vector<Told> WhatIsTold(const EffectSlot& slot, const EffectDescription& effect) {
  const struct {
    const std::u16string& componentId;
    std::size_t pointCount;
    std::size_t firstPoint;
  } curves[] = {
      {teskaudiofilters::kFFTFilterID, fftfilter::kPointCount, fftfilter::kFirstPoint},
      {teskaudiofilters::kDynamicsID, dynamics::kPointCount, dynamics::kFirstPoint},
  };
  std::vector<Told> told;
  for (std::size_t index = 0; index < effect.parameters.size(); ++index) {
    told.push_back({effect.parameters[index],
                    ToEffectScale(effect.parameters[index], slot.parameters[index])});
  }
  for (const auto& curve : curves) {
    if (slot.componentId != curve.componentId) continue;
    const auto points = static_cast<std::size_t>(std::lround(told[curve.pointCount].value));
    const std::size_t used = std::min(told.size(), curve.firstPoint + 2 * points);
    told.erase(told.begin() + static_cast<std::ptrdiff_t>(used), told.end());
  }
  return told;
}

JSONValue Number(double value) {
  return std::isfinite(value) ? JSONValue(value) : JSONValue(G_NullType);
}

JSONValue EffectsOf(const EffectChain& chain) {
  JSONValue effects = teskcore::serialization::JSONArray();
  for (const EffectSlot& slot : chain.Slots()) {
    const EffectDescription* effect = FindEffect(slot.componentId);
    if (!slot.enabled || effect == nullptr) continue;
    const JSONValue parameters = MakeArray(WhatIsTold(slot, *effect), [](const Told& told) {
      return MakeObject({{"name", std::string(told.parameter.name)},
                         {"value", Number(told.value)},
                         {"unit", std::string(told.parameter.unit)}});
    });
    teskcore::serialization::AppendToArray(effects,
                                           MakeObject({{"effect", std::string(effect->name)},
                                                       {"order", std::int64_t{slot.orderNumber}},
                                                       {"parameters", parameters}}));
  }
  return effects;
}

JSONValue LoudnessOf(const RenderReport& report) {
  if (!report.loudness) return G_NullType;
  return MakeObject({{"target_lufs", Number(report.chain.Loudness()->target)},
                     {"gain_db", Number(report.loudness->gain)},
                     {"reached_lufs", Number(report.loudness->reached)}});
}

const char* StatusOf(const RenderRequest& request, const RenderOutcome& outcome) {
  switch (outcome.status) {
    case RenderOutcome::kDone:
      return request.isDryRun ? "planned" : "rendered";
    case RenderOutcome::kFailed:
      return "failed";
    case RenderOutcome::kStopped:
      break;
  }
  return "stopped";
}

}  // namespace

JSONValue ToJSON(const RenderRequest& request, const RenderOutcome& outcome) {
  const RenderReport& report = outcome.report;
  const bool isDone = outcome.status == RenderOutcome::kDone;
  const std::string input = request.input.string();
  const std::string output = request.output.string();
  JSONValue object =
      MakeObject({{"input", input},
                  {"output", output},
                  {"picture", request.picture.empty() ? JSONValue(G_NullType)
                                                      : JSONValue(request.picture.string())},
                  {"status", std::string(StatusOf(request, outcome))},
                  {"error", isDone ? JSONValue(G_NullType) : JSONValue(outcome.error)},
                  {"notes", MakeArray(report.notes)}});
  if (!isDone) return object;
  AddToObject(object, "before",
              report.before ? ToJSON(input, *report.before) : JSONValue(G_NullType));
  AddToObject(object, "after",
              report.after ? ToJSON(output, *report.after) : JSONValue(G_NullType));
  AddToObject(object, "effects", EffectsOf(report.chain));
  AddToObject(object, "loudness", LoudnessOf(report));
  AddToObject(object, "pan", Number(report.chain.Pan()));
  AddToObject(
      object, "duration_s",
      report.chain.Duration() ? Number(report.chain.Duration()->seconds) : JSONValue(G_NullType));
  return object;
}

std::string DescribeChain(const RenderReport& report) {
  std::ostringstream text;
  const EffectChain& chain = report.chain;
  if (const auto& duration = chain.Duration()) {
    text << "  " << (duration->remix ? "remixed" : "stretched") << " to " << duration->seconds
         << " s\n";
  }
  for (const EffectSlot& slot : chain.Slots()) {
    const EffectDescription* effect = FindEffect(slot.componentId);
    if (!slot.enabled || effect == nullptr) continue;
    text << "  " << effect->name;
    const char* mark = ": ";
    for (const Told& told : WhatIsTold(slot, *effect)) {
      text << mark << told.parameter.name << " " << told.value
           << (*told.parameter.unit == '\0' ? "" : " ") << told.parameter.unit;
      mark = ", ";
    }
    text << "\n";
  }
  if (report.loudness) text << "  Loudness: gain " << report.loudness->gain << " dB\n";
  if (chain.Pan() != 0.0) text << "  Pan: " << chain.Pan() << " (-1 left, 1 right)\n";
  return text.str();
}

}  // namespace orvelhost
