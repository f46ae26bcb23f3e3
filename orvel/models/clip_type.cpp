#include "orvel/models/clip_type.h"

#include <algorithm>
#include <iterator>

namespace orvel {
namespace {

// clang-format off
struct ClipTypeText { const char* text; ClipType type; };
constexpr ClipTypeText kClipTypeTexts[] = {
  { "type_not_set",           type_not_set          },  // for what is none of these
  { "type_dialog",            type_dialog           },
  { "type_music",             type_music            },
  { "type_background_music",  type_background_music },
  { "type_sfx",               type_sfx              },
  { "type_ambience",          type_ambience         },
  { "type_other",             type_other            },
};
// clang-format on

template <typename Matches>
const ClipTypeText& Find(Matches matches) {
  const auto* found = std::find_if(std::begin(kClipTypeTexts), std::end(kClipTypeTexts), matches);
  return found == std::end(kClipTypeTexts) ? kClipTypeTexts[0] : *found;
}

}  // namespace

const char* GetClipTypeText(ClipType type) {
  return Find([type](const auto& entry) { return entry.type == type; }).text;
}

ClipType ParseClipType(const std::string& text) {
  return Find([&text](const auto& entry) { return entry.text == text; }).type;
}

// clang-format off
const char* const kClipTypeNameNotSetStr          = "$$$/orvel/ClipTypeNameNotSet=Not set";
const char* const kClipTypeNameDialogStr          = "$$$/orvel/ClipTypeNameDialogue=Dialogue";
const char* const kClipTypeNameMusicStr           = "$$$/orvel/ClipTypeNameMusic=Music";
const char* const kClipTypeNameBackgroundMusicStr = "$$$/orvel/ClipTypeNameBackgroundMusic=Background Music";
const char* const kClipTypeNameSFXStr             = "$$$/orvel/ClipTypeNameSFX=SFX";
const char* const kClipTypeNameAmbienceStr        = "$$$/orvel/ClipTypeNameAmbience=Ambience";
const char* const kClipTypeNameOtherStr           = "$$$/orvel/ClipTypeNameOther=Other";
// clang-format on

const char* const kAdjustmentsModeNameDialogStr = kClipTypeNameDialogStr;
const char* const kAdjustmentsModeNameMusicStr = kClipTypeNameMusicStr;
const char* const kAdjustmentsModeNameSFXStr = kClipTypeNameSFXStr;
const char* const kAdjustmentsModeNameAmbienceStr = kClipTypeNameAmbienceStr;

}  // namespace orvel
