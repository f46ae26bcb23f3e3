#include <array>
#include <cmath>
#include <span>

#include "host/effects/effect_catalogue.h"
#include "host/effects/filter_specs.h"
#include "host/effects/realisations.h"

namespace orvelhost {
namespace {

struct ToneStep {
  const char* filter;
  double frequency;  // Hz
  double width;      // octaves, of a bell; of the others the quality
  double gain;       // dB
};

// Fundamentals of men lie at about 85 to 155 Hz and of women at 165 to 255 Hz (Titze, Principles of
// Voice Production): what is below them is no voice. Between 250 and 600 Hz lies what makes a voice
// dull, at 2 to 5 kHz what tells consonants apart (ANSI S3.5). Music gives way there.
// clang-format off
constexpr std::array<ToneStep, 4> kLowVoice = {{
    // filter      frequency  width   gain
    { "highpass",     70.0,   0.707,   0.0 },
    { "equalizer",   300.0,   1.5,    -2.0 },
    { "equalizer",  2800.0,   1.6,     3.5 },
    { "highshelf",  9000.0,   0.707,   1.5 },
}};
constexpr std::array<ToneStep, 4> kHighVoice = {{
    { "highpass",    120.0,   0.707,   0.0 },
    { "equalizer",   500.0,   1.5,    -2.0 },
    { "equalizer",  4000.0,   1.6,     3.0 },
    { "highshelf", 10000.0,   0.707,   1.5 },
}};
constexpr std::array<ToneStep, 1> kMusic = {{
    { "equalizer",  2200.0,   2.5,    -3.0 },
}};
// clang-format on

constexpr std::array<std::span<const ToneStep>, 3> kVoices = {kLowVoice, kHighVoice, kMusic};

}  // namespace

std::vector<FilterSpec> VocalEnhancer(EffectValues values, const EffectContext& context) {
  constexpr double kHighestShare = 0.4;  // of the sample rate: filters end before its half
  std::vector<FilterSpec> filters;
  const auto voice = static_cast<std::size_t>(std::lround(values[vocalenhancer::kVoice]));
  for (const ToneStep& step : kVoices[voice]) {
    if (step.frequency > kHighestShare * context.format.sampleRate) {
      continue;
    }
    FilterSpec spec = {step.filter,
                       {{"frequency", Text(step.frequency)},
                        {"width_type", step.filter == std::string("equalizer") ? "o" : "q"},
                        {"width", Text(step.width)},
                        {"precision", "f64"}}};
    if (step.gain != 0.0) {
      spec.options["gain"] = Text(step.gain);
    }
    filters.push_back(spec);
  }
  return filters;
}

}  // namespace orvelhost
