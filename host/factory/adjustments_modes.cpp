#include "host/factory/adjustments_modes.h"

#include "orvel/orvel.h"

namespace orvelhost {
namespace {

// clang-format off
constexpr const char* kDialogSections[]   = { "model_loudness", "model_restoration",  "model_clarity",     "model_soundeffects", "model_volume" };
constexpr const char* kMusicSections[]    = { "model_loudness", "model_duration",     "model_volume" };
constexpr const char* kSfxSections[]      = { "model_loudness", "model_soundeffects", "model_pan",         "model_volume" };
constexpr const char* kAmbienceSections[] = { "model_loudness", "model_soundeffects", "model_stereowidth", "model_volume" };

constexpr AdjustmentsMode kModes[] = {
  // id          display name  clip type        sections
  { "dialog",    "Dialogue",   "type_dialog",   kDialogSections   },
  { "music",     "Music",      "type_music",    kMusicSections    },
  { "sfx",       "SFX",        "type_sfx",      kSfxSections      },
  { "ambience",  "Ambience",   "type_ambience", kAmbienceSections },
};
// clang-format on

using namespace teskcore::serialization;

void AddText(JSONValue& object, const char* key, const char* text) {
  AddToObject(object, key, JSONValue(std::string(text)));
}

}  // namespace

std::span<const AdjustmentsMode> AdjustmentsModes() { return kModes; }

std::string AdjustmentsModesDocument() {
  JSONValue document = JSONArray();
  for (const AdjustmentsMode& mode : kModes) {
    JSONValue sections = JSONArray();
    for (const char* modelID : mode.sections) {
      JSONValue section = JSONObject();
      AddText(section, "modelID", modelID);
      AppendToArray(sections, section);
    }
    JSONValue entry = JSONObject();
    AddText(entry, "modeId", mode.id);
    AddText(entry, "displayname", mode.displayName);
    AddText(entry, "cliptype", mode.clipType);
    AddToObject(entry, "sections", sections);
    AppendToArray(document, entry);
  }
  return GetJSONUTF8String(document, true);
}

}  // namespace orvelhost
