#include "host/render/report_text.h"

#include <cmath>
#include <iomanip>
#include <limits>
#include <sstream>

namespace orvelhost {
namespace {

std::string Cell(double value, bool withSign) {
  if (std::isnan(value)) {
    return "-";
  }
  if (std::isinf(value)) {
    return withSign ? "-" : value < 0 ? "-inf" : "inf";
  }
  std::ostringstream text;
  text << std::fixed << std::setprecision(2) << (withSign ? std::showpos : std::noshowpos)
       << (std::abs(value) < 0.005 ? 0.0 : value);
  return text.str();
}

std::string Row(const char* name, double before, double after) {
  std::ostringstream text;
  text << std::left << std::setw(22) << name << std::right << std::setw(9) << Cell(before, false)
       << std::setw(9) << Cell(after, false) << std::setw(9) << Cell(after - before, true) << "\n";
  return text.str();
}

}  // namespace

std::string FormatLevels(const RenderReport& report) {
  constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
  ClipAnalysis nothing;
  nothing.loudness = nothing.truePeak = nothing.samplePeak = kNone;
  const ClipAnalysis before = report.before.value_or(nothing);
  const ClipAnalysis after = report.after.value_or(nothing);
  std::ostringstream text;
  text << std::setw(31) << "before" << std::setw(9) << "after" << std::setw(9) << "change"
       << "\n"
       << Row("Loudness, LUFS", before.loudness, after.loudness)
       << Row("Sample peak, dBFS", before.samplePeak, after.samplePeak)
       << Row("True peak, dBTP", before.truePeak, after.truePeak)
       << Row("Side to mid, dB", before.width.value_or(kNone), after.width.value_or(kNone));
  return text.str();
}

}  // namespace orvelhost
