#pragma once

#include <string>

#include "orvel/core/export.h"

namespace teskaudiofilters {

// The component ids of the effects that the sections drive. They are constants of the effect
// library: a document that stores one must find it again, so they never change.

extern ORVEL_EXPORT const std::u16string kHardLimiterID;             ///< volume
extern ORVEL_EXPORT const std::u16string kStereoExpanderID;          ///< stereo width
extern ORVEL_EXPORT const std::u16string kAdaptiveNoiseReductionID;  ///< restoration: noise
extern ORVEL_EXPORT const std::u16string kIzotopeDeHummerID;         ///< restoration: hum
extern ORVEL_EXPORT const std::u16string kIzotopeDeEsserID;          ///< restoration: sibilance
extern ORVEL_EXPORT const std::u16string kFFTFilterID;               ///< restoration: rumble
extern ORVEL_EXPORT const std::u16string kDynamicsID;                ///< clarity: dynamics
extern ORVEL_EXPORT const std::u16string kGraphicEQ10BandsID;        ///< clarity: equaliser
extern ORVEL_EXPORT const std::u16string kIzotopeVocalEnhancerID;    ///< clarity: vocal enhancer
extern ORVEL_EXPORT const std::u16string kStudioReverbID;            ///< sound effects: reverb

}  // namespace teskaudiofilters

namespace orvel {
using namespace teskaudiofilters;  // nothing but the ids stands in it
}  // namespace orvel
