#pragma once

#include <cmath>

namespace orvelhost {

/// The factor of an amplitude behind a level in dB.
inline double Factor(double decibels) { return std::pow(10.0, decibels / 20.0); }

/// The factor of a power behind a level in dB.
inline double PowerFactor(double decibels) { return std::pow(10.0, decibels / 10.0); }

}  // namespace orvelhost
