#include "host/factory/equalizer_presets.h"

#include <algorithm>

#include "host/factory/effect_settings.h"

namespace orvelhost {
namespace {

// A user preset at amount 5 takes half of each gain, so voice curves are drawn twice as deep as
// they are meant to be heard.
// clang-format off
constexpr EqualizerPreset kPresets[] = {
  //                                                  samples    dB      31.5     63      125     250     500    1 k    2 k     4 k     8 k      16 k
  { "BackgroundVoice",      "Background Voice",          7930,   48, {{   0,       0,      0,      0,      0,   -1.04, -2.03, -2.025, -0.984,   0    }} },
  { "Intercom",             "Intercom",                 12734,  120, {{ -51.42,  -51.42, -51.42, -11.71,  -1.72, 0,     6.19,  11.52, -33.3,  -51.42 }} },
  { "LockedInTheTrunk",     "Locked in the Trunk",       8192,  120, {{ -18,      -6,      3,      6,      0,   -9,   -18,    -28,    -40,     -50    }} },
  { "OldRadio",             "Old Radio",                 8192,  120, {{ -48,     -36,    -18,     -3,      2,    3,    -1,    -10,    -36,     -54    }} },
  { "OnTheTelephone",       "On the Telephone",          8192,  120, {{ -54,     -48,    -30,     -8,      0,    0,     2,    -14,    -48,     -57    }} },
  { "OutsideOfTheRoom",     "Outside of the Room",       8192,  120, {{   0,       0,     -1,     -3,     -8,  -14,   -20,    -26,    -34,     -42    }} },
  { "PodcastVoice",         "Podcast Voice",             8192,   48, {{ -24,     -12,      3,     -3,     -3,    0,     3,      4.5,    3,       0    }} },
  { "SubtleBoostFemale",    "Subtle Boost (Female)",     8192,   48, {{ -24,     -18,     -6,      3,      0,    0,     3,      4.5,    3,       1.5  }} },
  { "SubtleBoostMale",      "Subtle Boost (Male)",       8192,   48, {{ -24,      -9,      4.5,   -1.5,   -3,    0,     3,      4.5,    1.5,     0    }} },
  { "ThatPublicRadioSound", "That Public Radio Sound",   8192,   48, {{ -18,       0,      6,      4.5,   -3,   -1.5,   0,      3,      1.5,    -3    }} },
  { "VocalPresence",        "Vocal Presence",            8192,   48, {{ -24,     -15,     -6,     -3,     -1.5,  0,     4.5,    7.5,    4.5,     1.5  }} },
};
// clang-format on

}  // namespace

std::span<const EqualizerPreset> EqualizerPresets() { return kPresets; }

std::string EqualizerPresetKey(const EqualizerPreset& preset) {
  return std::string("$$$/app/Presets/Orvel/EQPreset/") + preset.word + "=" + preset.title;
}

orvel::PropList EqualizerPresetTree() {
  using namespace graphicequalizer;
  orvel::PropList tree;
  for (const EqualizerPreset& preset : kPresets) {
    std::array<double, kBypass + 1> settings{};  // zero: no master gain, linear phase, no bypass
    settings[kAccuracy] = preset.accuracy;
    settings[kRange] = preset.range;
    std::ranges::transform(preset.gains, settings.begin() + kFirstBand,
                           [&](double gain) { return 100.0 * gain / preset.range; });
    tree.SetValue(EqualizerPresetKey(preset),
                  NormalizedSettings(orvel::kGraphicEQ10BandsID, settings, kCharacterPlaces));
  }
  return tree;
}

}  // namespace orvelhost
