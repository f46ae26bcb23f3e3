#include "orvel/models/mode_descriptor_cache.h"

#include <algorithm>
#include <iterator>

#include "orvel/core/localizer.h"
#include "orvel/core/text.h"
#include "orvel/models/clip_keys.h"

namespace orvel {
namespace {

ModeDescriptorCache* instance = nullptr;

// clang-format off
struct ModeName { const char* modeID; const char* const& key; };
const ModeName kModeNames[] = {
  { "dialog",    kAdjustmentsModeNameDialogStr   },
  { "music",     kAdjustmentsModeNameMusicStr    },
  { "sfx",       kAdjustmentsModeNameSFXStr      },
  { "ambience",  kAdjustmentsModeNameAmbienceStr },
};
// clang-format on

}  // namespace

ModeDescriptorCache::ModeDescriptorCache(const std::vector<AdjustmentsModeDescriptor>& descriptors)
    : descriptors_(descriptors) {}

ModeDescriptorCache::~ModeDescriptorCache() = default;

// A cache that is there already is left to whoever holds its pointer.
void ModeDescriptorCache::Initialize(const std::vector<AdjustmentsModeDescriptor>& descriptors) {
  instance = new ModeDescriptorCache(descriptors);
}

void ModeDescriptorCache::Terminate() {
  delete instance;
  instance = nullptr;
}

ModeDescriptorCache* ModeDescriptorCache::Get() { return instance; }

std::set<std::string> ModeDescriptorCache::GetAdjustmentsModes() const {
  std::set<std::string> modeIDs;
  for (const auto& descriptor : descriptors_) modeIDs.insert(descriptor.modeID);
  return modeIDs;
}

bool ModeDescriptorCache::GetOrderedJSONAdjustmentsModes(std::vector<std::string>& modeIDs) const {
  modeIDs.clear();
  for (const auto& descriptor : descriptors_) modeIDs.push_back(descriptor.modeID);
  return !modeIDs.empty();
}

std::vector<AdjustmentModeInfo> ModeDescriptorCache::GetAdjustmentsModeInfos() const {
  std::vector<AdjustmentModeInfo> infos;
  for (const auto& d : descriptors_) {
    infos.push_back({d.modeID, d.displayName, d.localizedDisplayName, d.ClipType});
  }
  return infos;
}

bool ModeDescriptorCache::GetSectionDescriptors(const std::string& modeID,
                                                std::vector<SectionDescriptor>& sections) const {
  const auto* descriptor = Find(modeID);
  if (descriptor != nullptr) sections = descriptor->sections;
  return descriptor != nullptr;
}

bool ModeDescriptorCache::GetClipTypeFromAdjustmentsMode(const std::string& modeID,
                                                         ClipType& type) const {
  type = type_other;
  if (modeID == kAdjustmentsModeUnknown) {
    type = type_not_set;
    return true;
  }
  const auto* descriptor = Find(modeID);
  if (descriptor != nullptr) type = descriptor->ClipType;
  return type < type_other;
}

bool ModeDescriptorCache::IsValidMode(const std::string& modeID) const {
  return Find(modeID) != nullptr;
}

std::u16string ModeDescriptorCache::GetAdjustmentsModeDisplayNameFromModeId(
    const std::string& modeID) {
  const auto* found = std::find_if(std::begin(kModeNames), std::end(kModeNames),
                                   [&modeID](const auto& entry) { return entry.modeID == modeID; });
  return found == std::end(kModeNames) ? UTF8to16(modeID) : ZString(found->key);
}

const AdjustmentsModeDescriptor* ModeDescriptorCache::Find(const std::string& modeID) const {
  const auto found = std::find_if(descriptors_.begin(), descriptors_.end(),
                                  [&modeID](const auto& d) { return d.modeID == modeID; });
  return found == descriptors_.end() ? nullptr : &*found;
}

}  // namespace orvel
