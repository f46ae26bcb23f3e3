#include "orvel/core/component_ids.h"

namespace teskaudiofilters {

// clang-format off
const std::u16string kHardLimiterID            = u"HardLimiter";
const std::u16string kStereoExpanderID         = u"StereoExpander";
const std::u16string kAdaptiveNoiseReductionID = u"AdaptiveNoiseReduction";
const std::u16string kIzotopeDeHummerID        = u"DeHummer";
const std::u16string kIzotopeDeEsserID         = u"DeEsser";
const std::u16string kFFTFilterID              = u"FFTFilter";
const std::u16string kDynamicsID               = u"Dynamics";
const std::u16string kGraphicEQ10BandsID       = u"GraphicEQ10Bands";
const std::u16string kIzotopeVocalEnhancerID   = u"VocalEnhancer";
const std::u16string kStudioReverbID           = u"StudioReverb";
// clang-format on

}  // namespace teskaudiofilters
