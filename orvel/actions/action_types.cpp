#include "orvel/actions/action_types.h"

namespace orvel {

const std::u16string kActionType_SetSectionModelParam = u"ActionType_SetSectionModelParam";
const std::u16string kActionType_SetMixTypeModelParam = u"ActionType_SetMixTypeModelParam";
const std::u16string kActionType_SetClipLoudness = u"ActionType_SetClipLoudness";

}  // namespace orvel
