#include "host/catalogue/preset_store.h"

#include <algorithm>

#include "host/audio/audio_error.h"
#include "host/catalogue/mode_catalogue.h"

namespace orvelhost {
namespace {

using orvel::ConfigPreset;
using orvel::UserPreset;

std::string QuotedFolder() {
  return Quoted(orvel::UTF16to8(orvel::GetPresetsBaseDir().FullPath()));
}

/// Of the letters that have no accents.
std::string LowerCase(std::string text) {
  std::ranges::transform(text, text.begin(), [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  });
  return text;
}

/// The presets that a name or a guid means. As it is stored, a name tells presets apart that are
/// shown alike.
template <typename T>
std::vector<T> Matches(const std::vector<T>& presets, const std::string& name, Capitals capitals) {
  std::vector<T> matches;
  const orvel::Guid guid(name);
  const auto keep = [&](const auto& fits) {
    if (matches.empty()) std::ranges::copy_if(presets, std::back_inserter(matches), fits);
  };
  keep([&](const T& preset) { return !guid.IsNull() && preset.Guid == guid; });
  keep([&](const T& preset) { return preset.Name == name; });
  keep([&](const T& preset) {
    return ShownName(preset.Name) == name || EnglishName(preset.Name) == name;
  });
  if (capitals == Capitals::kAsWritten) return matches;
  keep([&](const T& preset) {
    return LowerCase(ShownName(preset.Name)) == LowerCase(name) ||
           LowerCase(EnglishName(preset.Name)) == LowerCase(name);
  });
  return matches;
}

/// Sorted by what a person sees, the default entry first.
template <typename T>
void SortByName(std::vector<T>& presets) {
  std::ranges::stable_sort(presets, [](const T& left, const T& right) {
    const bool isDefault = IsDefaultName(left.Name);
    if (isDefault != IsDefaultName(right.Name)) return isDefault;
    return teskcore::utility::CompareForDisplay(orvel::ZString(left.Name),
                                                orvel::ZString(right.Name)) < 0;
  });
}

/// `within` tells, behind the mode, where the query looks.
template <typename T, typename Describe>
T TakeOnly(const std::vector<T>& matches, const std::string& kind, const PresetQuery& query,
           const std::string& within, Describe describe) {
  if (matches.size() == 1) return matches.front();
  const std::string where = (query.modeID.empty() ? "" : " in the mode " + query.modeID) + within;
  if (matches.empty()) {
    throw PresetError("there is no " + kind + " " + Quoted(query.name) + where);
  }
  std::string message =
      "several " + kind + "s are called " + Quoted(query.name) + where + "; give the guid of one:";
  for (const T& match : matches) message += "\n  " + describe(match);
  throw PresetError(message);
}

}  // namespace

bool IsDefaultName(const std::string& name) { return EnglishName(name) == "(Default)"; }

PresetStore::PresetStore(const Host& host)
    : host_(host), cache_(orvel::ConfigurationManager::Get()->GetPresetsCache()) {
  std::vector<ConfigPreset> all;
  cache_->GetPresets(all);
  if (all.empty()) {
    Fail("the preset folder " + QuotedFolder() + " cannot be read or made");
  }
}

void PresetStore::Fail(const std::string& what) const {
  std::string message = what;
  for (const auto& trace : host_.GetLog().TakeTraces()) message += ": " + Printable(trace);
  throw PresetError(message);
}

std::vector<ConfigPreset> PresetStore::GetTemplates(const std::string& modeID) const {
  std::vector<ConfigPreset> all;
  cache_->GetPresets(all);
  std::vector<ConfigPreset> sorted;
  for (const auto& mode : GetModes()) {
    if (!modeID.empty() && mode.modeID != modeID) continue;
    std::vector<ConfigPreset> ofMode;
    std::ranges::copy_if(all, std::back_inserter(ofMode), [&mode](const ConfigPreset& preset) {
      return preset.PresetData.ModeID == mode.modeID;
    });
    SortByName(ofMode);
    std::stable_partition(ofMode.begin(), ofMode.end(),
                          [this](const auto& preset) { return IsFactory(preset); });
    std::ranges::move(ofMode, std::back_inserter(sorted));
  }
  return sorted;
}

std::vector<UserPreset> PresetStore::GetPresets(const std::string& modeID) const {
  std::vector<UserPreset> sorted;
  for (const auto& configuration : GetTemplates(modeID)) {
    std::vector<UserPreset> presets;
    cache_->GetUserPresetsForConfig(configuration.Guid, presets);
    SortByName(presets);
    std::ranges::move(presets, std::back_inserter(sorted));
  }
  return sorted;
}

ConfigPreset PresetStore::GetTemplate(const UserPreset& preset) const {
  ConfigPreset configuration;
  cache_->FindPreset(preset.PresetData.Config, configuration);
  return configuration;
}

ConfigPreset PresetStore::GetFactoryTemplate(const std::string& modeID) const {
  ConfigPreset configuration;
  if (!cache_->GetFactoryConfigPreset(modeID, configuration)) {
    Fail("the template of the mode " + modeID + " is missing in the preset folder " +
         QuotedFolder() + "; it is made anew when the folder Orvel/Default there is moved away");
  }
  return configuration;
}

bool PresetStore::IsFactory(const ConfigPreset& configuration) const {
  ConfigPreset factory;
  return cache_->GetFactoryConfigPreset(configuration.PresetData.ModeID, factory) &&
         factory.Guid == configuration.Guid;
}

bool PresetStore::IsFactory(const UserPreset& preset) const {
  return cache_->IsFactoryPresetName(preset.Name) && IsFactory(GetTemplate(preset));
}

UserPreset PresetStore::FindPreset(const PresetQuery& query) const {
  std::vector<UserPreset> presets = GetPresets(query.modeID);
  std::string within;
  if (!query.config.IsNull()) {
    std::erase_if(presets, [&](const auto& p) { return p.PresetData.Config != query.config; });
    ConfigPreset configuration;
    const bool isKnown = cache_->FindPreset(query.config, configuration);
    if (isKnown && !IsFactory(configuration)) {
      within = ", template " + PrintedName(configuration.Name);
    }
  }
  return TakeOnly(Matches(presets, query.name, query.capitals), "preset", query, within,
                  [this](const UserPreset& preset) { return Describe(preset); });
}

ConfigPreset PresetStore::FindTemplate(const PresetQuery& query) const {
  return TakeOnly(Matches(GetTemplates(query.modeID), query.name, query.capitals), "template",
                  query, "", [](const ConfigPreset& preset) {
                    return PrintedName(preset.Name) + "  (" + preset.PresetData.ModeID + ", " +
                           preset.Guid.AsUTF8String() + ")";
                  });
}

bool PresetStore::FindPreset(const orvel::Guid& guid, const orvel::Guid& config,
                             UserPreset& preset) const {
  std::vector<UserPreset> presets;
  cache_->GetUserPresetsForConfig(config, presets);
  const auto found = std::ranges::find(presets, guid, [](const auto& p) { return p.Guid; });
  if (found != presets.end()) preset = *found;
  return found != presets.end();
}

std::vector<UserPreset> PresetStore::FindReplaced(const UserPreset& preset) const {
  std::vector<UserPreset> presets;
  cache_->GetUserPresetsForConfig(preset.PresetData.Config, presets);
  std::erase_if(presets, [&preset](const UserPreset& other) {
    return other.Guid != preset.Guid && other.Name != preset.Name &&
           ShownName(other.Name) != ShownName(preset.Name);
  });
  return presets;
}

std::string PresetStore::FindFault(const UserPreset& preset, bool replace) const {
  const orvel::Guid config = preset.PresetData.Config;
  const boost::intrusive_ptr<orvel::UserPresetsHandler> handler(new orvel::UserPresetsHandler(
      cache_, [config](const UserPreset& other) { return other.PresetData.Config == config; }));
  host_.GetLog().TakeTraces();
  switch (handler->CheckPresetName(preset.Name, preset.Guid)) {
    case orvel::PresetNameStatus::kUsable:
      return "";
    case orvel::PresetNameStatus::kReserved:
      return "the name " + Quoted(preset.Name) + " is reserved";
    case orvel::PresetNameStatus::kNotAFileName: {
      const auto traces = host_.GetLog().TakeTraces();
      return traces.empty() ? "the name cannot be that of a file" : Printable(traces.back());
    }
    case orvel::PresetNameStatus::kTaken:
      break;
  }
  for (const auto& other : FindReplaced(preset)) {
    if (other.Guid == preset.Guid) continue;
    if (IsFactory(other)) {
      return "a preset that comes with the library has this name: " + Describe(other);
    }
    if (!replace) return "there is a preset of this name: " + Describe(other);
  }
  return "";
}

void PresetStore::Save(const UserPreset& preset, bool replace) const {
  if (const std::string fault = FindFault(preset, replace); !fault.empty()) {
    throw PresetError(fault);
  }
  const auto replaced = FindReplaced(preset);
  host_.GetLog().TakeTraces();
  if (!cache_->SavePreset(preset)) Fail("cannot save " + Describe(preset));
  for (const auto& other : replaced) {
    if (other.Guid != preset.Guid) cache_->RemovePreset(other.Guid, preset.PresetData.Config);
  }
}

void PresetStore::Remove(const UserPreset& preset) const {
  if (IsFactory(preset)) {
    throw PresetError("a preset that comes with the library stays: " + Describe(preset));
  }
  host_.GetLog().TakeTraces();
  if (!cache_->RemovePreset(preset.Guid, preset.PresetData.Config)) {
    Fail("cannot remove " + Describe(preset));
  }
}

std::string PresetStore::Describe(const UserPreset& preset) const {
  const ConfigPreset configuration = GetTemplate(preset);
  const bool isPlain = configuration.Guid.IsNull() || IsFactory(configuration);
  const std::string made = isPlain ? "" : ", template " + PrintedName(configuration.Name);
  return PrintedName(preset.Name) + "  (" + Printable(preset.PresetData.ModeID) + made + ", " +
         preset.Guid.AsUTF8String() + ")";
}

}  // namespace orvelhost
