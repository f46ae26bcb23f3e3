#pragma once

#include <set>
#include <string>
#include <vector>

#include "orvel/core/export.h"
#include "orvel/models/adjustments_mode_descriptor.h"

namespace orvel {

/// The adjustments modes of the running library. A mode id is compared byte by byte.
class ORVEL_EXPORT ModeDescriptorCache {
 public:
  static void Initialize(const std::vector<AdjustmentsModeDescriptor>& descriptors);
  static void Terminate();

  /// Null before `Initialize` and after `Terminate`.
  static ModeDescriptorCache* Get();

  /// The mode ids, sorted; and in the order of the descriptors, with whether there is one at all.
  std::set<std::string> GetAdjustmentsModes() const;
  bool GetOrderedJSONAdjustmentsModes(std::vector<std::string>& modeIDs) const;

  /// Copies the sections of a mode, of the first descriptor that has this id; false, with
  /// `sections` as it was, when none has.
  bool GetSectionDescriptors(const std::string& modeID,
                             std::vector<SectionDescriptor>& sections) const;

  bool IsValidMode(const std::string& modeID) const;

 private:
  explicit ModeDescriptorCache(const std::vector<AdjustmentsModeDescriptor>& descriptors);
  ~ModeDescriptorCache();

  std::vector<AdjustmentsModeDescriptor> descriptors_;
};

}  // namespace orvel
