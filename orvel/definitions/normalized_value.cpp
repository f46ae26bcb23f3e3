#include "orvel/definitions/normalized_value.h"

namespace orvel::modelutils {

float ToNormalized(float min, float max, float value) {
  return max == min ? 0.0f : (value - min) / (max - min);
}

float ToPhysical(float min, float max, float normalized) { return (max - min) * normalized + min; }

}  // namespace orvel::modelutils
