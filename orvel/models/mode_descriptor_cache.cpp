#include "orvel/models/mode_descriptor_cache.h"

#include <algorithm>

namespace orvel {
namespace {

ModeDescriptorCache* instance = nullptr;

}  // namespace

ModeDescriptorCache::ModeDescriptorCache(const std::vector<AdjustmentsModeDescriptor>& descriptors)
    : descriptors_(descriptors) {}

ModeDescriptorCache::~ModeDescriptorCache() = default;

void ModeDescriptorCache::Initialize(const std::vector<AdjustmentsModeDescriptor>& descriptors) {
  Terminate();
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

bool ModeDescriptorCache::GetSectionDescriptors(const std::string& modeID,
                                                std::vector<SectionDescriptor>& sections) const {
  const auto found = std::find_if(descriptors_.begin(), descriptors_.end(),
                                  [&modeID](const auto& d) { return d.modeID == modeID; });
  if (found == descriptors_.end()) return false;
  sections = found->sections;
  return true;
}

bool ModeDescriptorCache::IsValidMode(const std::string& modeID) const {
  return GetAdjustmentsModes().contains(modeID);
}

}  // namespace orvel
