#include "host/factory/reverb_presets.h"

#include "host/factory/effect_settings.h"

namespace orvelhost {
namespace {

// clang-format off
constexpr ReverbPreset kPresets[] = {
  //                                                               pre-   decay  diffu- early  low    bass    high   damp-  width  dry  wet  early   pattern
  //                                                               delay         sion   refl.  cut    ratio   cut    ing                     spread
  //                                                               ms     s      %      %      Hz             Hz     %      %      %    %    ms
  { "sfx",      "HeavyReverb",         "Heavy Reverb",          {{ 26.64, 3.0,   100,   96,    428,   1.0,    10316, 30,    100,   50,  50,   50.26,  2 }} },
  { "sfx",      "LightReverb",         "Light Reverb",          {{  8,    0.6,    90,   60,    120,   1.0,     9000, 40,    100,   80,  20,   40,     1 }} },
  { "sfx",      "OutsideReverb",       "Outside Reverb",        {{ 60,    1.2,    35,   15,    150,   0.8,     5000, 65,    140,   70,  30,  120,     3 }} },
  { "sfx",      "RoomReverb",          "Room Reverb",           {{  5,    0.8,    85,   80,     80,   1.05,    8000, 45,    100,   70,  30,   30,     4 }} },
  { "dialog",   "Auditorium",          "Auditorium",            {{  2.6,  1.598, 100,   90,     20,   1.0402,  8344, 46,    100,   73,  16,  150.76,  1 }} },
  { "dialog",   "Church",              "Church",                {{ 40,    4.5,   100,   50,     40,   1.3,     6500, 50,    130,   65,  35,  120,     2 }} },
  { "dialog",   "LargeReflectiveRoom", "Large Reflective Room", {{ 15,    2.4,    80,   95,     80,   0.9,    10000, 20,    120,   70,  30,   80,     3 }} },
  { "dialog",   "OutsideTheClub",      "Outside the Club",      {{ 12,    0.9,    90,   40,     20,   1.6,      900, 80,     60,   60,  40,   60,     4 }} },
  { "dialog",   "SmallDryRoom",        "Small Dry Room",        {{  1.5,  0.3,    80,   70,    120,   1.0,     9000, 60,     80,   80,  20,   20,     5 }} },
  { "dialog",   "ThickenVoice",        "Thicken Voice",         {{ 22,    0.15,   20,  100,    150,   1.0,     7000, 30,    150,   80,  20,   30,     6 }} },
  { "dialog",   "WarmRoom",            "Warm Room",             {{  8,    0.7,    90,   60,     60,   1.3,     5000, 65,    100,   75,  25,   30,     7 }} },
  { "dialog",   "WarmVoice",           "Warm Voice",            {{  3,    0.4,    90,   40,     40,   1.4,     4000, 70,     80,   80,  20,   20,     8 }} },
  { "ambience", "LargeRoomAmbience",   "Large Room Ambience",   {{ 25,    2.0,   100,   60,     60,   1.1,     7000, 45,    140,   65,  35,   90,     3 }} },
  { "ambience", "OutsideAmbience",     "Outside Ambience",      {{ 70,    1.5,    40,   10,    120,   0.8,     4500, 70,    160,   70,  30,  150,     5 }} },
  { "ambience", "RoomAmbience",        "Room Ambience",         {{  6,    0.6,    90,   70,     60,   1.0,     8000, 45,    110,   75,  25,   30,     4 }} },
  { "ambience", "WindEffect",          "Wind Effect",           {{ 39.2,  6.9,    69.7, 25,    260,   1.0,     4709, 52,    100,   75,  25,   50.26,  1 }} },
};
// clang-format on

}  // namespace

std::span<const ReverbPreset> ReverbPresets() { return kPresets; }

std::string ReverbPresetKey(const ReverbPreset& preset) {
  return std::string("$$$/app/Presets/Orvel/ReverbPreset/") + preset.word + "=" + preset.title;
}

orvel::PropList ReverbPresetTree(const std::string& mode) {
  orvel::PropList tree;
  for (const ReverbPreset& preset : kPresets) {
    if (preset.mode == mode) {
      tree.SetValue(ReverbPresetKey(preset),
                    NormalizedSettings(orvel::kStudioReverbID, preset.settings, kCharacterPlaces));
    }
  }
  return tree;
}

}  // namespace orvelhost
