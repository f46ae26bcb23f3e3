#pragma once

#include <span>
#include <string>
#include <vector>

namespace orvelhost {

/// How many decimals of a normalised value are kept.
inline constexpr int kCharacterPlaces = 4;  ///< for a sound's character: finer than can be heard
inline constexpr int kRepairPlaces = 6;     ///< for filters that cut sharply at one frequency

/// All settings of an effect, given on its physical scales, as configurations hold them: each in
/// 0..1, rounded to `places` decimals so that documents stay readable. Each value must lie inside
/// its parameter's range, and there must be one for every parameter.
std::vector<float> NormalizedSettings(const std::u16string& componentId,
                                      std::span<const double> physical, int places);

}  // namespace orvelhost
