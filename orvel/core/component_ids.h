#pragma once

#include <string>

#include "orvel/core/export.h"

namespace teskaudiofilters {

/// The component ids of the effects that the sections drive. They are constants of the effect
/// library: a document that stores one must find it again, so they never change.
extern ORVEL_EXPORT const std::u16string kHardLimiterID;
extern ORVEL_EXPORT const std::u16string kStereoExpanderID;
extern ORVEL_EXPORT const std::u16string kAdaptiveNoiseReductionID;
extern ORVEL_EXPORT const std::u16string kIzotopeDeHummerID;
extern ORVEL_EXPORT const std::u16string kIzotopeDeEsserID;
extern ORVEL_EXPORT const std::u16string kFFTFilterID;
extern ORVEL_EXPORT const std::u16string kDynamicsID;
extern ORVEL_EXPORT const std::u16string kGraphicEQ10BandsID;
extern ORVEL_EXPORT const std::u16string kIzotopeVocalEnhancerID;
extern ORVEL_EXPORT const std::u16string kStudioReverbID;

}  // namespace teskaudiofilters

namespace orvel {
using namespace teskaudiofilters;  // nothing but the ids stands in it
}  // namespace orvel
