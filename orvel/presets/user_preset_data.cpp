#include "orvel/presets/user_preset_data.h"

#include <algorithm>
#include <cmath>

namespace orvel {
namespace {

constexpr float kTolerance = 0.00001f;

// The difference is taken in single precision; a NaN is close to nothing.
bool IsClose(float left, float right) { return std::abs(left - right) <= kTolerance; }

}  // namespace

const Guid UserPresetData::kType("e3181c3e-b0f2-4014-8e41-9d4dc0d53cf2");

bool operator==(const UserPresetData& left, const UserPresetData& right) {
  return left.Config == right.Config && left.ModeID == right.ModeID &&
         std::equal(left.Models.begin(), left.Models.end(), right.Models.begin(),
                    right.Models.end(), [](const auto& a, const auto& b) {
                      return a.first == b.first &&
                             std::equal(a.second.begin(), a.second.end(), b.second.begin(),
                                        b.second.end(), IsClose);
                    });
}

}  // namespace orvel
