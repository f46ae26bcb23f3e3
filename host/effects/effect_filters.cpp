#include "host/effects/effect_filters.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "host/audio/audio_error.h"
#include "host/effects/effect_catalogue.h"
#include "orvel/orvel.h"

namespace orvelhost {
namespace {

/// With all digits, so that the filter computes with the very number that was meant.
std::string Text(double value) {
  std::array<char, 32> text{};
  return {text.data(), std::to_chars(text.data(), text.data() + text.size(), value).ptr};
}

FilterSpec Gain(double factor) {
  return {"volume", {{"volume", Text(factor)}, {"precision", "double"}}};
}

/// Two outputs out of two inputs, or of the one there is.
FilterSpec Matrix(const std::string& left, const std::string& right) {
  return {"pan", {{"args", "stereo|c0=" + left + "|c1=" + right}}};
}

double Factor(double decibels) { return std::pow(10.0, decibels / 20.0); }

/// A normalised float tells 150 dB apart in steps of about 0.00001 dB. Without the rounding, a
/// gain of 0 dB would arrive as nearly 0.
double RoundDecibels(double decibels) { return std::round(decibels * 10000.0) / 10000.0; }

/// The largest float that is not above `value`: samples are floats, so a limit that is one, too,
/// is not exceeded by rounding.
double FloatBelow(double value) {
  const float nearest = static_cast<float>(value);
  return nearest > value ? std::nextafter(nearest, 0.0f) : nearest;
}

using Values = std::span<const double>;

std::vector<FilterSpec> HardLimiter(Values values, int /*channelCount*/) {
  const double ceiling = FloatBelow(Factor(RoundDecibels(values[hardlimiter::kCeiling])));
  const double gain = Factor(RoundDecibels(values[hardlimiter::kGain]));
  // The limiter works at full scale, where its own range of limits does not matter. Its automatic
  // level would bring the output back to full scale; its delay is taken off again.
  return {Gain(gain / ceiling),
          {"alimiter",
           {{"limit", "1"}, {"level", "0"}, {"latency", "1"}, {"attack", "5"}, {"release", "50"}}},
          Gain(ceiling)};
}

std::vector<FilterSpec> StereoExpander(Values values, int channelCount) {
  std::vector<FilterSpec> filters;
  if (channelCount != 2) {
    return filters;
  }
  constexpr double kInaudible = 1e-6;
  const double side = 3.0 * values[stereoexpander::kWidth];
  if (std::abs(side - 1.0) > kInaudible) {
    filters.push_back({"extrastereo", {{"m", Text(side)}, {"c", "0"}}});
  }
  const double centre = 2.0 * values[stereoexpander::kCentre] - 1.0;
  if (std::abs(centre) > kInaudible) {
    // With m, s for the mid and side signals: left = m * toLeft + s, right = m * toRight - s.
    const double toLeft = std::min(1.0, 1.0 - centre);
    const double toRight = std::min(1.0, 1.0 + centre);
    filters.push_back(
        Matrix(Text((toLeft + 1.0) / 2.0) + "*c0+" + Text((toLeft - 1.0) / 2.0) + "*c1",
               Text((toRight - 1.0) / 2.0) + "*c0+" + Text((toRight + 1.0) / 2.0) + "*c1"));
  }
  return filters;
}

struct Realisation {
  const std::u16string& componentId;
  std::vector<FilterSpec> (*build)(Values values, int channelCount);
};

}  // namespace

std::vector<FilterSpec> EffectFilters(const std::u16string& componentId,
                                      std::span<const float> normalized, int channelCount) {
  static const std::array<Realisation, 2> realisations = {{
      {teskaudiofilters::kHardLimiterID, &HardLimiter},
      {teskaudiofilters::kStereoExpanderID, &StereoExpander},
  }};
  const EffectDescription* effect = FindEffect(componentId);
  const auto realisation = std::ranges::find_if(
      realisations, [&](const Realisation& one) { return one.componentId == componentId; });
  if (effect == nullptr || realisation == realisations.end()) {
    throw AudioError("this host cannot run the effect '" +
                     (effect == nullptr ? orvel::UTF16to8(componentId) : effect->name) + "'");
  }
  std::vector<double> values;
  for (std::size_t index = 0; index < effect->parameters.size(); ++index) {
    values.push_back(ToEffectScale(
        effect->parameters[index],
        index < normalized.size() ? normalized[index] : std::numeric_limits<float>::quiet_NaN()));
  }
  return realisation->build(values, channelCount);
}

std::vector<FilterSpec> PanFilters(double pan, int channelCount) {
  if (pan == 0.0 || std::isnan(pan) || channelCount > 2) {
    return {};
  }
  pan = std::clamp(pan, -1.0, 1.0);
  const std::string left = Text(std::min(1.0, 1.0 - pan)) + "*c0";
  const std::string right = Text(std::min(1.0, 1.0 + pan)) + (channelCount == 2 ? "*c1" : "*c0");
  return {Matrix(left, right)};
}

}  // namespace orvelhost
