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
  /// Makes the one instance; called once until `Terminate`, by `orvel::Initialize`.
  static void Initialize(const std::vector<AdjustmentsModeDescriptor>& descriptors);

  /// Ends it; harmless without one.
  static void Terminate();

  /// Null before `Initialize` and after `Terminate`.
  static ModeDescriptorCache* Get();

  /// The mode ids, sorted.
  std::set<std::string> GetAdjustmentsModes() const;

  /// Replaces `modeIDs` by the mode ids in the order of the descriptors; whether there is one at
  /// all.
  bool GetOrderedJSONAdjustmentsModes(std::vector<std::string>& modeIDs) const;

  /// One for each descriptor, in their order.
  std::vector<AdjustmentModeInfo> GetAdjustmentsModeInfos() const;

  /// Copies the sections of a mode, of the first descriptor that has this id; false, with
  /// `sections` as it was, when none has.
  bool GetSectionDescriptors(const std::string& modeID,
                             std::vector<SectionDescriptor>& sections) const;

  /// The clip type that goes with a mode; `type_not_set` for `kAdjustmentsModeUnknown`. False, with
  /// `type_other`, for an id that no descriptor has, and for a mode of that clip type.
  bool GetClipTypeFromAdjustmentsMode(const std::string& modeID, ClipType& type) const;

  /// Whether a descriptor has this id.
  bool IsValidMode(const std::string& modeID) const;

  /// The name to show for one of the modes that this library knows by itself, whatever the
  /// descriptors say; any other id as it stands.
  static std::u16string GetAdjustmentsModeDisplayNameFromModeId(const std::string& modeID);

 private:
  const AdjustmentsModeDescriptor* Find(const std::string& modeID) const;

  explicit ModeDescriptorCache(const std::vector<AdjustmentsModeDescriptor>& descriptors);
  ~ModeDescriptorCache();

  std::vector<AdjustmentsModeDescriptor> descriptors_;
};

}  // namespace orvel
