#include "orvel/models/adjustments_modes_json.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

#include "orvel/core/json.h"
#include "orvel/core/library_module.h"
#include "orvel/core/localizer.h"
#include "orvel/core/text.h"

namespace orvel {
namespace {

using teskcore::serialization::GetVariantInObject;
using teskcore::serialization::JSONArray;
using teskcore::serialization::JSONParse;
using teskcore::serialization::JSONValuePtr;

// clang-format off
struct DisplayName { std::string_view name; const char* const& key; };
const DisplayName kDisplayNames[] = {
  { "Dialogue",  kAdjustmentsModeNameDialogStr   },
  { "Music",     kAdjustmentsModeNameMusicStr    },
  { "SFX",       kAdjustmentsModeNameSFXStr      },
  { "Ambience",  kAdjustmentsModeNameAmbienceStr },
};
// clang-format on

std::u16string LocalizeDisplayName(const std::string& name) {
  const auto* found = std::find_if(std::begin(kDisplayNames), std::end(kDisplayNames),
                                   [&name](const auto& entry) { return entry.name == name; });
  return found == std::end(kDisplayNames) ? UTF8to16(name) : ZString(found->key);
}

template <typename T>
T ReadOrEmpty(const JSONValuePtr& object, const std::string& key) {
  const JSONValuePtr member = GetVariantInObject(object, key);
  const auto* held = boost::any_cast<T>(member.get());
  return held == nullptr ? T() : *held;
}

AdjustmentsModeDescriptor ReadMode(const JSONValuePtr& object) {
  AdjustmentsModeDescriptor mode;
  mode.displayName = ReadOrEmpty<std::string>(object, "displayname");
  mode.localizedDisplayName = LocalizeDisplayName(mode.displayName);
  mode.ClipType = ParseClipType(ReadOrEmpty<std::string>(object, "cliptype"));
  mode.modeID = ReadOrEmpty<std::string>(object, "modeId");
  for (const auto& section : ReadOrEmpty<JSONArray>(object, "sections")) {
    mode.sections.push_back({ReadOrEmpty<std::string>(section, "modelID")});
  }
  return mode;
}

}  // namespace

std::vector<AdjustmentsModeDescriptor> GetDefaultAdjustmentsModeDescriptors() {
  std::vector<AdjustmentsModeDescriptor> modes;
  std::vector<unsigned char> text;
  if (GetBinaryFromModule(GetLibraryModule(), u"DefaultAdjustmentsModes", u"json", text)) {
    ParseJSONAdjustmentsModeDescriptors(std::string(text.begin(), text.end()), modes);
  }
  return modes;
}

bool ParseJSONAdjustmentsModeDescriptors(const std::string& text,
                                         std::vector<AdjustmentsModeDescriptor>& modes) {
  const JSONValuePtr root = JSONParse(text);
  if (!root) return false;
  modes.clear();
  const auto* entries = boost::any_cast<JSONArray>(root.get());
  if (entries == nullptr) return true;
  for (const auto& entry : *entries) {
    AdjustmentsModeDescriptor mode = ReadMode(entry);
    if (!mode.modeID.empty()) modes.push_back(std::move(mode));
  }
  return true;
}

}  // namespace orvel
