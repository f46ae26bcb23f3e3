#include "host/effects/effect_catalogue.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "orvel/orvel.h"

namespace orvelhost {
namespace {

// clang-format off
constexpr std::array<EffectParameter, 2> kHardLimiter = {{
    // name       unit      min      max    initial
    { "Ceiling",  "dBFS",  -100.0f,  0.0f,  0.0f },
    { "Gain",     "dB",    -100.0f, 50.0f,  0.0f },
}};

constexpr std::array<EffectParameter, 2> kStereoExpander = {{
    // name       unit      min      max    initial
    { "Centre",   "",         0.0f,  1.0f,  0.5f },         // 0 is left, 1 is right
    { "Width",    "",         0.0f,  1.0f,  1.0f / 3.0f },  // a third leaves the width as it is
}};

constexpr std::array<EffectParameter, 9> kNoiseReduction = {{
    // name                   unit        min       max       initial
    { "Reduction",            "dB",         0.0f,     40.0f,    15.0f },
    { "Noisiness",            "%",          0.0f,    100.0f,    20.0f },  // share taken for noise
    { "Noise floor tuning",   "dB",       -10.0f,     10.0f,     0.0f },  // shifts the estimate
    { "Signal threshold",     "dB",       -20.0f,     20.0f,     0.0f },  // below it all is noise
    { "Decay rate",           "ms",        20.0f,    750.0f,   100.0f },  // until the floor is reached
    { "Preservation",         "Hz",         0.0f,   1000.0f,   300.0f },  // band kept round a partial
    { "Transform size",       "samples",    0.0f,  65536.0f,  2048.0f },
    { "Fine estimate",        "",           0.0f,      1.0f,     0.0f },  // estimates twice as often
    { "Noise only",           "",           0.0f,      1.0f,     0.0f },  // lets hear what is taken
}};

constexpr std::array<EffectParameter, 6> kDeHummer = {{
    // name                   unit        min       max       initial
    { "Base frequency",       "Hz",        20.0f,  20000.0f,    60.0f },
    { "Sharpness",            "Q",          1.0f,    200.0f,    50.0f },
    { "Hum level",            "dB",       -80.0f,      5.0f,     0.0f },  // what is left of the hum
    { "Harmonics",            "",           1.0f,     16.0f,     8.0f },
    { "Harmonic slope",       "%",          0.0f,    100.0f,     0.0f },  // less for higher ones
    { "Hum only",             "",           0.0f,      1.0f,     0.0f },
}};

constexpr std::array<EffectParameter, 15> kDeEsser = {{
    // name                   unit        min       max       initial
    { "Threshold",            "dB",       -80.0f,      0.0f,     0.0f },
    { "Attack",               "ms",         0.01f,    50.0f,    10.0f },
    { "Release",              "ms",        10.0f,    500.0f,   100.0f },
    { "Centre frequency",     "Hz",       500.0f,  12000.0f,  4700.0f },
    { "Bandwidth",            "Hz",       100.0f,   7500.0f,  2500.0f },
    { "Sibilance only",       "",           0.0f,      1.0f,     0.0f },
    { "Split band",           "",           0.0f,      1.0f,     1.0f },  // else all is turned down
    { "Look-ahead",           "ms",         0.0f,     20.0f,     0.0f },
    { "Knee",                 "dB",         0.0f,     24.0f,     0.0f },
    { "Make-up gain",         "dB",         0.0f,     24.0f,     0.0f },
    { "Listen",               "",           0.0f,      1.0f,     0.0f },  // to the detector
    { "Reduction limit",      "dB",         0.0f,     24.0f,    18.0f },
    { "Link",                 "%",          0.0f,    100.0f,   100.0f },  // channels act together
    { "Mix",                  "%",          0.0f,    100.0f,   100.0f },
    { "Ratio",                ":1",         1.0f,     11.0f,     5.0f },
}};

constexpr std::array<EffectParameter, fftfilter::kFirstPoint> kFftFilterSettings = {{
    // name                   unit        min       max       initial
    { "Transform size",       "samples",    0.0f,  65536.0f,  8192.0f },
    { "Window",               "",           0.0f,      3.0f,     3.0f },  // Hann, Hamming, Blackman, Blackman-Harris
    { "Smooth curve",         "",           0.0f,      1.0f,     0.0f },  // else straight lines
    { "Output gain",          "dB",       -60.0f,     20.0f,     0.0f },
    { "Mix",                  "%",          0.0f,    100.0f,   100.0f },
    { "Level view",           "",           0.0f,      1.0f,     0.0f },  // of the panel
    { "Frequency view",       "",           0.0f,      1.0f,     0.0f },
    { "Minimum phase",        "",           0.0f,      1.0f,     0.0f },
    { "Bypass",               "",           0.0f,      1.0f,     0.0f },
    { "Points",               "",           0.0f,    128.0f,     0.0f },
}};
constexpr EffectParameter kFilterPoint[] = {
    { "Point frequency",      "Hz",         0.0f,  22050.0f, 22050.0f },
    { "Point gain",           "dB",       -60.0f,     20.0f,     0.0f },
};

constexpr std::array<EffectParameter, dynamics::kFirstPoint> kDynamicsSettings = {{
    // name                   unit        min       max       initial
    { "Detector attack",      "ms",         0.0f,    500.0f,     5.0f },
    { "Detector release",     "ms",         0.0f,   5000.0f,   100.0f },
    { "Detector RMS",         "",           0.0f,      1.0f,     1.0f },  // else peaks
    { "Input gain",           "dB",       -24.0f,     24.0f,     0.0f },
    { "Gain attack",          "ms",         0.0f,    500.0f,     5.0f },
    { "Gain release",         "ms",         0.0f,   5000.0f,   200.0f },
    { "Look-ahead",           "ms",         0.0f,     50.0f,     5.0f },
    { "Low cut",              "Hz",         0.0f,  22050.0f,     0.0f },  // of the detector
    { "High cut",             "Hz",         0.0f,  22050.0f, 22050.0f },
    { "Output gain",          "dB",       -24.0f,     24.0f,     0.0f },
    { "Points",               "",           0.0f,      7.0f,     0.0f },
    { "Link",                 "",           0.0f,      1.0f,     1.0f },  // channels act together
    { "Smooth curve",         "",           0.0f,      1.0f,     0.0f },  // else straight lines
    { "Noise gate",           "",           0.0f,      1.0f,     0.0f },  // silence below the first point
    { "Make-up",              "",           0.0f,      1.0f,     0.0f },  // gives back what full scale loses
    { "Make-up limit",        "dB",         0.0f,     24.0f,    24.0f },
    { "Mix",                  "%",          0.0f,    100.0f,   100.0f },
}};
constexpr EffectParameter kDynamicsPoint[] = {
    { "Point input",          "dBFS",    -100.0f,      0.0f,     0.0f },
    { "Point output",         "dBFS",    -100.0f,      0.0f,     0.0f },
};

// Octave bands round the centre frequencies of ISO 266.
constexpr std::array<EffectParameter, 15> kGraphicEqualizer = {{
    // name                   unit        min       max       initial
    { "Accuracy",             "samples",    0.0f,  65536.0f,  8192.0f },  // length of the filter
    { "Master gain",          "dB",       -24.0f,     24.0f,     0.0f },
    { "Range",                "dB",         1.5f,    120.0f,    48.0f },  // from a band's end to the other
    { "Minimum phase",        "",           0.0f,      1.0f,     0.0f },
    { "31.5 Hz",              "% of range", -50.0f,   50.0f,     0.0f },
    { "63 Hz",                "% of range", -50.0f,   50.0f,     0.0f },
    { "125 Hz",               "% of range", -50.0f,   50.0f,     0.0f },
    { "250 Hz",               "% of range", -50.0f,   50.0f,     0.0f },
    { "500 Hz",               "% of range", -50.0f,   50.0f,     0.0f },
    { "1 kHz",                "% of range", -50.0f,   50.0f,     0.0f },
    { "2 kHz",                "% of range", -50.0f,   50.0f,     0.0f },
    { "4 kHz",                "% of range", -50.0f,   50.0f,     0.0f },
    { "8 kHz",                "% of range", -50.0f,   50.0f,     0.0f },
    { "16 kHz",               "% of range", -50.0f,   50.0f,     0.0f },
    { "Bypass",               "",           0.0f,      1.0f,     0.0f },
}};

constexpr std::array<EffectParameter, 1> kVocalEnhancer = {{
    // name                   unit        min       max       initial
    { "Voice",                "",           0.0f,      2.0f,     1.0f },  // low, high, music
}};

constexpr std::array<EffectParameter, 13> kStudioReverb = {{
    // name                   unit        min       max       initial
    { "Pre-delay",            "ms",         0.0f,    200.0f,    20.0f },
    { "Decay",                "s",          0.01f,    10.0f,     1.5f },  // RT60 at 1 kHz
    { "Diffusion",            "%",          0.0f,    100.0f,   100.0f },
    { "Early reflections",    "%",          0.0f,    100.0f,    80.0f },
    { "Low cut",              "Hz",        20.0f,    500.0f,    20.0f },
    { "Bass ratio",           "",           0.0f,      2.0f,     1.0f },  // RT60 at 125 Hz to that at 1 kHz
    { "High cut",             "Hz",        20.0f,  20000.0f, 12000.0f },
    { "Damping",              "%",          0.0f,    100.0f,    30.0f },  // how much sooner the highs decay
    { "Width",                "%",          0.0f,    200.0f,   100.0f },
    { "Dry",                  "%",          0.0f,    100.0f,   100.0f },
    { "Wet",                  "%",          0.0f,    100.0f,     0.0f },
    { "Early spread",         "ms",         0.0f,    200.0f,    50.0f },  // until the last early reflection
    { "Pattern",              "",           0.0f,     32.0f,     1.0f },  // of the reflections
}};
// clang-format on

/// The settings of an effect followed by the two values of each of `Count` points.
template <std::size_t Count, std::size_t Settings>
constexpr auto WithPoints(const std::array<EffectParameter, Settings>& settings,
                          const EffectParameter (&point)[2]) {
  std::array<EffectParameter, Settings + 2 * Count> all{};
  for (std::size_t index = 0; index < all.size(); ++index) {
    all[index] = index < Settings ? settings[index] : point[(index - Settings) % 2];
  }
  return all;
}

constexpr auto kFftFilter = WithPoints<fftfilter::kMaxPoints>(kFftFilterSettings, kFilterPoint);
constexpr auto kDynamics = WithPoints<dynamics::kMaxPoints>(kDynamicsSettings, kDynamicsPoint);

}  // namespace

std::span<const EffectDescription> Effects() {
  // Built on first use: the ids belong to another library and are made while it is loaded.
  static const std::array<EffectDescription, 10> effects = {{
      {teskaudiofilters::kHardLimiterID, "Hard Limiter", kHardLimiter},
      {teskaudiofilters::kStereoExpanderID, "Stereo Expander", kStereoExpander},
      {teskaudiofilters::kAdaptiveNoiseReductionID, "Noise Reduction", kNoiseReduction},
      {teskaudiofilters::kIzotopeDeHummerID, "De-hummer", kDeHummer},
      {teskaudiofilters::kIzotopeDeEsserID, "De-esser", kDeEsser},
      {teskaudiofilters::kFFTFilterID, "FFT Filter", kFftFilter},
      {teskaudiofilters::kDynamicsID, "Dynamics", kDynamics},
      {teskaudiofilters::kGraphicEQ10BandsID, "Graphic Equalizer", kGraphicEqualizer},
      {teskaudiofilters::kIzotopeVocalEnhancerID, "Vocal Enhancer", kVocalEnhancer},
      {teskaudiofilters::kStudioReverbID, "Studio Reverb", kStudioReverb},
  }};
  return effects;
}

const EffectDescription* FindEffect(const std::u16string& componentId) {
  const auto found = std::ranges::find_if(Effects(), [&](const EffectDescription& effect) {
    return effect.componentId == componentId;
  });
  return found == Effects().end() ? nullptr : &*found;
}

std::vector<float> InitialParameters(const EffectDescription& effect) {
  std::vector<float> values;
  for (const EffectParameter& parameter : effect.parameters) {
    values.push_back((parameter.initial - parameter.minimum) /
                     (parameter.maximum - parameter.minimum));
  }
  return values;
}

double FromEffectScale(const EffectParameter& parameter, double physical) {
  const double minimum = parameter.minimum;
  return (physical - minimum) / (parameter.maximum - minimum);
}

double ToEffectScale(const EffectParameter& parameter, float normalized) {
  if (std::isnan(normalized)) {
    return parameter.initial;
  }
  const double minimum = parameter.minimum;
  return minimum + (parameter.maximum - minimum) * std::clamp(normalized, 0.0f, 1.0f);
}

}  // namespace orvelhost
