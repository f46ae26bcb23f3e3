#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <numbers>

#include "host/effects/effect_catalogue.h"
#include "host/effects/filter_specs.h"
#include "host/effects/realisations.h"

namespace orvelhost {
namespace {

// The plate decays by 60 dB in these times (measured at 1 kHz, undamped, at any sample rate) when
// its control "tail" stands at 0, 0.1, ... 1.
constexpr std::array<double, 11> kPlateDecays = {0.61, 1.07, 1.44, 1.67, 1.83, 2.02,
                                                 2.23, 2.57, 3.06, 3.78, 5.00};
/// How often in a second the sound passes the plate's damping filter, on the average (measured).
constexpr double kPlatePasses = 9.0;

double PlateTail(double decay) {
  const auto above = std::ranges::upper_bound(kPlateDecays, decay);
  if (above == kPlateDecays.begin() || above == kPlateDecays.end()) {
    return above == kPlateDecays.begin() ? 0.0 : 1.0;
  }
  const double below = *(above - 1);
  return (static_cast<double>(above - kPlateDecays.begin()) - 1.0 +
          (decay - below) / (*above - below)) /
         (kPlateDecays.size() - 1.0);
}

/// What the plate's damping, a filter of one pole at `damping`, takes from 1 kHz in one pass, in
/// dB.
double DampingAt1kHz(double damping, double sampleRate) {
  const double turn = 2.0 * std::numbers::pi * 1000.0 / sampleRate;
  return -20.0 * std::log10((1.0 - damping) /
                            std::sqrt(1.0 - 2.0 * damping * std::cos(turn) + damping * damping));
}

/// A plate that decays by 60 dB in `decay` seconds at 1 kHz. Its own decays end at 0.6 and 5 s, so
/// it is made smaller or larger with the decay, as rooms are: it is told another sample rate than
/// the audio's, by which all its times shrink or grow. Each instance of the plugin that was ever
/// made keeps 0.2 MB until the process ends (caps 0.9.26 does not free its delay lines), and a
/// filter graph cannot take one over from another: whoever changes chains while they run should
/// make new ones only for changes that somebody hears.
std::vector<FilterSpec> Plate(double decay, double damping, int sampleRate) {
  constexpr double kLeastRate = 4000.0;
  constexpr double kMostDamping = 0.25;  // share of the decay at 1 kHz; the rest is the control's
  const double own = std::clamp(2.0 * std::sqrt(decay), 0.8, 4.0);  // in the plate's own time
  const int plateRate =
      static_cast<int>(std::lround(std::max(kLeastRate, sampleRate * decay / own)));
  const double scaled = decay * sampleRate / plateRate;
  damping *= 0.8;  // the control's last fifth leaves nothing of the high tones
  double losses = 0.0;
  while (damping > 0.01) {
    losses = kPlatePasses * DampingAt1kHz(damping, plateRate) / 60.0;
    if (losses <= kMostDamping / scaled && 1.0 / scaled - losses >= 1.0 / kPlateDecays.back()) {
      break;
    }
    damping *= 0.9;  // such a decay leaves no room for so much damping
  }
  const double tail = PlateTail(1.0 / std::max(1e-3, 1.0 / scaled - losses));
  return {{"asetrate", {{"sample_rate", std::to_string(plateRate)}}},
          {"ladspa",
           {{"file", "caps"},
            {"plugin", "PlateX2"},
            // Bandwidth, tail, damping, and nothing of the input.
            {"controls", "c0=1|c1=" + Text(tail) + "|c2=" + Text(damping) + "|c3=1"}}},
          {"asetrate", {{"sample_rate", std::to_string(sampleRate)}}}};
}

/// Where low tones decay in another time than the others, each have a plate of their own.
std::vector<FilterSpec> Tail(EffectValues values, int sampleRate) {
  using namespace studioreverb;
  const double decay = values[kDecay];
  const double damping = values[kDamping] / 100.0;
  const double lowDecay = decay * std::max(0.1, values[kBassRatio]);
  std::vector<FilterSpec> whole = Plate(decay, damping, sampleRate);
  if (std::abs(lowDecay / decay - 1.0) < 0.02) {
    return whole;
  }
  const auto cut = [](const char* filter) {
    return FilterSpec{filter, {{"frequency", "350"}, {"precision", "f64"}}};
  };
  std::vector<FilterSpec> low = Plate(lowDecay, damping, sampleRate);
  whole.insert(whole.begin(), cut("highpass"));
  low.insert(low.begin(), cut("lowpass"));
  return {Sum({whole, low})};
}

/// Even in 0..1, the same for the same arguments (the finaliser of SplitMix64).
double Scatter(std::uint64_t pattern, std::uint64_t index) {
  std::uint64_t bits = pattern * 0x9E3779B97F4A7C15u + index * 0xD1B54A32D192ED03u + 1;
  bits = (bits ^ (bits >> 30)) * 0xBF58476D1CE4E5B9u;
  bits = (bits ^ (bits >> 27)) * 0x94D049BB133111EBu;
  return static_cast<double>((bits ^ (bits >> 31)) >> 11) * 0x1.0p-53;
}

/// `count` reflections scattered over `spread` seconds, of the energy of their input together. They
/// fall by `fall` dB from the first to the last.
std::vector<FilterSpec> Reflections(int count, double spread, double fall, int pattern) {
  std::vector<double> gains;
  std::string delays;
  double energy = 0.0;
  for (int index = 0; index < count; ++index) {
    const double place =
        (index + Scatter(static_cast<std::uint64_t>(pattern), static_cast<std::uint64_t>(index))) /
        count;
    delays.append(delays.empty() ? "" : "|").append(Text(std::max(0.1, place * spread * 1000.0)));
    gains.push_back(Factor(-place * fall));
    energy += gains.back() * gains.back();
  }
  std::string decays;
  for (const double gain : gains) {
    decays.append(decays.empty() ? "" : "|").append(Text(std::max(1e-4, gain / std::sqrt(energy))));
  }
  // The filter cuts at full scale, so it sees the sound small.
  constexpr double kSmall = 1.0 / 1024.0;
  return {Gain(kSmall),
          {"aecho", {{"in_gain", "0"}, {"out_gain", "1"}, {"delays", delays}, {"decays", decays}}},
          Gain(1.0 / kSmall)};
}

std::vector<FilterSpec> Scaled(std::vector<FilterSpec> filters, double energy) {
  filters.push_back(Gain(std::sqrt(energy)));
  return filters;
}

std::vector<FilterSpec> Wet(EffectValues values, const AudioFormat& format) {
  using namespace studioreverb;
  constexpr double kMilliseconds = 1e-3;
  const double early = 0.5 * values[kEarlyReflections] / 100.0;  // shares of the energy
  const double diffuse = (1.0 - early) * values[kDiffusion] / 100.0;
  const double sparse = 1.0 - early - diffuse;
  const double spread = values[kEarlySpread] * kMilliseconds;
  const int pattern = static_cast<int>(std::lround(values[kPattern]));
  std::vector<std::vector<FilterSpec>> parts;
  if (early > 0.0) {
    parts.push_back(Scaled(Reflections(8, spread, 12.0, pattern), early));
  }
  if (diffuse > 0.0) {
    parts.push_back(Scaled(Tail(values, format.sampleRate), diffuse));
  }
  if (sparse > 1e-9) {
    // Other places than those of the early ones.
    constexpr int kOther = 100;
    parts.push_back(Scaled(Reflections(24, values[kDecay], 60.0, kOther + pattern), sparse));
  }

  std::vector<FilterSpec> wet;
  const std::int64_t preDelay = std::llround(values[kPreDelay] * kMilliseconds * format.sampleRate);
  if (preDelay > 0) {
    wet.push_back({"adelay", {{"delays", std::to_string(preDelay) + "S"}, {"all", "1"}}});
  }
  wet.push_back(
      {"pan", {{"args", format.channelCount == 1 ? "stereo|c0=c0|c1=c0" : "stereo|c0=c0|c1=c1"}}});
  wet.push_back(Sum(parts));
  if (values[kLowCut] > 20.5) {
    wet.push_back({"highpass", {{"frequency", Text(values[kLowCut])}, {"precision", "f64"}}});
  }
  if (values[kHighCut] < 0.45 * format.sampleRate) {
    wet.push_back({"lowpass", {{"frequency", Text(values[kHighCut])}, {"precision", "f64"}}});
  }
  if (format.channelCount == 1) {
    wet.push_back({"pan", {{"args", "mono|c0=0.7071*c0+0.7071*c1"}}});
  } else if (std::abs(values[kWidth] - 100.0) > 0.01) {
    wet.push_back({"extrastereo", {{"m", Text(values[kWidth] / 100.0)}, {"c", "0"}}});
  }
  wet.push_back(Gain(values[kWet] / 100.0));
  // Until the last of it has fallen by 90 dB.
  const double seconds = values[kPreDelay] * kMilliseconds +
                         std::max(spread, 1.5 * values[kDecay] * std::max(1.0, values[kBassRatio]));
  wet.back().tail = std::llround(seconds * format.sampleRate);
  return wet;
}

}  // namespace

std::vector<FilterSpec> StudioReverb(EffectValues values, const EffectContext& context) {
  using namespace studioreverb;
  constexpr double kInaudible = 1e-4;  // %
  if (context.format.channelCount > 2) {
    return {};
  }
  if (values[kWet] > kInaudible) {
    return {Sum({{Gain(values[kDry] / 100.0)}, Wet(values, context.format)})};
  }
  if (values[kDry] < 100.0 - kInaudible) {
    return {Gain(values[kDry] / 100.0)};
  }
  return {};
}

}  // namespace orvelhost
