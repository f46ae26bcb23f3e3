#include "orvel/models/clip_model_utils.h"

#include "orvel/models/clip_keys.h"
#include "orvel/models/mix_type_clip_model_interface.h"
#include "orvel/models/section_model_interface.h"

namespace orvel::modelutils {
namespace {

// Reads the first clip straight into `value`, and each further one into `unset` to compare. The
// walk ends with the first clip that differs, whose value is kept, or that cannot be read.
template <typename T, typename Read>
int ReadCommon(const MixTypeClipModels& clips, T& value, const T& unset, Read read) {
  value = unset;
  int status = kStatus_Success;
  bool isFirst = true;
  for (const auto& clip : clips) {
    if (status != kStatus_Success) break;
    if (isFirst) {
      status = read(*clip, value);
      isFirst = false;
      continue;
    }
    T other = unset;
    status = read(*clip, other);
    if (other != value) {
      value = other;
      status = kStatus_ValuesDiffer;
    }
  }
  return status;
}

}  // namespace

int GetClipType(const MixTypeClipModels& clips, ClipType& type) {
  return ReadCommon(clips, type, type_not_set,
                    [](auto& clip, ClipType& value) { return clip.GetClipType(value); });
}

int GetAdjustmentsMode(const MixTypeClipModels& clips, std::string& modeID) {
  return ReadCommon(clips, modeID, kAdjustmentsModeUnknown,
                    [](auto& clip, std::string& value) { return clip.GetAdjustmentsMode(value); });
}

int GetUserPresetGuid(const MixTypeClipModels& clips, Guid& guid) {
  guid = Guid();
  bool isFirst = true;
  for (const auto& clip : clips) {
    Guid other;
    const int status = clip->GetUserPresetGuid(other);
    if (status != kStatus_Success) return status;
    if (isFirst) {
      guid = other;
      isFirst = false;
    } else if (other != guid) {
      guid = Guid();
      return kStatus_ValuesDiffer;
    }
  }
  return kStatus_Success;
}

}  // namespace orvel::modelutils
