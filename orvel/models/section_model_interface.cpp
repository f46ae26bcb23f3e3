#include "orvel/models/section_model_interface.h"

namespace orvel {

SectionModelInterface::~SectionModelInterface() = default;

}  // namespace orvel
