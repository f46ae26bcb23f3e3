#include "host/catalogue/preset_import.h"

#include <algorithm>
#include <exception>
#include <functional>

#include "host/audio/audio_error.h"
#include "host/catalogue/mode_catalogue.h"

namespace orvelhost {
namespace {

using orvel::UserPreset;

bool IsArray(const std::string& text) {
  const std::size_t start = text.find_first_not_of("\xEF\xBB\xBF \t\r\n");
  return start != std::string::npos && text[start] == '[';
}

std::vector<UserPreset> ReadAll(const std::string& text) {
  std::vector<UserPreset> presets;
  try {
    if (IsArray(text)) {
      orvel::ReadPresets(text, presets);
    } else {
      orvel::ReadPreset(text, presets.emplace_back());
      if (presets.front().Guid.IsNull()) presets.clear();
    }
  } catch (const orvel::JSONError& error) {
    throw PresetError(error.what());
  } catch (const std::exception&) {  // a member of another kind, a number beyond its type
    throw PresetError("it holds something else than user presets");
  }
  if (presets.empty()) throw PresetError("it holds no user preset with a guid");
  return presets;
}

bool AreAlike(const UserPreset& left, const UserPreset& right) {
  return left.PresetData.Config == right.PresetData.Config &&
         (left.Guid == right.Guid || left.Name == right.Name ||
          ShownName(left.Name) == ShownName(right.Name));
}

/// Decides about one preset without saving it; `earlier` are those before it in the text.
ImportedPreset Judge(const UserPreset& preset, const PresetStore& store, bool replace,
                     const std::vector<ImportedPreset>& earlier) {
  ImportedPreset judged{preset, ImportOutcome::kRefused, ""};
  const auto& data = judged.preset.PresetData;
  if (!IsMode(data.ModeID)) {
    judged.reason = "there is no mode " + Quoted(data.ModeID);
    return judged;
  }
  std::string note;
  if (store.GetTemplate(preset).PresetData.ModeID != data.ModeID) {
    judged.preset.PresetData.Config = store.GetFactoryTemplate(data.ModeID).Guid;
    note = "its template is not here; it goes under that of the mode";
  }
  const auto isTwin = [&judged](const ImportedPreset& other) {
    return other.outcome != ImportOutcome::kRefused && AreAlike(other.preset, judged.preset);
  };
  if (std::ranges::any_of(earlier, isTwin)) {
    judged.reason = "one of its guid or name stands before it";
    return judged;
  }
  UserPreset present;
  const bool isThere = store.FindPreset(preset.Guid, data.Config, present);
  if (isThere && present.Name == preset.Name && present.PresetData == data) {
    judged.outcome = ImportOutcome::kUnchanged;
    return judged;
  }
  if (isThere && (!replace || store.IsFactory(present))) {
    judged.reason = "it is there with other values: " + store.Describe(present);
    return judged;
  }
  judged.reason = store.FindFault(judged.preset, replace);
  if (!judged.reason.empty()) return judged;
  judged.outcome = store.FindReplaced(judged.preset).empty() ? ImportOutcome::kImported
                                                             : ImportOutcome::kReplaced;
  judged.reason = note;
  return judged;
}

}  // namespace

std::vector<ImportedPreset> ImportPresets(const std::string& text, const PresetStore& store,
                                          bool replace) {
  std::vector<ImportedPreset> judged;
  for (const auto& preset : ReadAll(text)) {
    judged.push_back(Judge(preset, store, replace, judged));
  }
  std::vector<std::function<void()>> undo;
  try {
    for (const auto& one : judged) {
      if (one.outcome != ImportOutcome::kImported && one.outcome != ImportOutcome::kReplaced) {
        continue;
      }
      const std::vector<UserPreset> before = store.FindReplaced(one.preset);
      store.Save(one.preset, replace);
      undo.emplace_back([&store, &one, before] {
        store.Remove(one.preset);
        for (const auto& preset : before) store.Save(preset, true);
      });
    }
  } catch (const PresetError&) {
    for (auto step = undo.rbegin(); step != undo.rend(); ++step) (*step)();
    throw;
  }
  return judged;
}

}  // namespace orvelhost
