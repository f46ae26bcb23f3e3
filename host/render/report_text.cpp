#include "host/render/report_text.h"

#include <cmath>
#include <iomanip>
#include <limits>
#include <sstream>

#include "host/analysis/analysis_report.h"

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

std::string Line(const std::string& name, const std::string& before, const std::string& after,
                 const std::string& change) {
  std::ostringstream text;
  text << std::left << std::setw(22) << name << std::right << std::setw(9) << before << std::setw(9)
       << after << std::setw(9) << change << "\n";
  return text.str();
}

std::string Row(const std::string& name, double before, double after) {
  return Line(name, Cell(before, false), Cell(after, false), Cell(after - before, true));
}

/// Empty when there was no hum and is none.
std::string HumRow(const ClipAnalysis& was, const ClipAnalysis& is) {
  const std::optional<Hum>& before = was.hum;
  const std::optional<Hum>& after = is.hum;
  if (!before && !after) return "";
  const long frequency = std::lround(before ? before->frequency : after->frequency);
  const auto cell = [](const ClipAnalysis& clip) {
    return clip.hum ? Cell(clip.hum->level, false) : std::isnan(clip.noiseFloor) ? "-" : "none";
  };
  return Line("Hum at " + std::to_string(frequency) + " Hz, dBFS", cell(was), cell(is),
              before && after ? Cell(after->level - before->level, true) : "-");
}

}  // namespace

std::string FormatLevels(const RenderReport& report) {
  constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
  ClipAnalysis nothing;
  nothing.loudness = nothing.loudnessRange = kNone;
  nothing.truePeak = nothing.samplePeak = nothing.noiseFloor = kNone;
  const ClipAnalysis before = report.before.value_or(nothing);
  const ClipAnalysis after = report.after.value_or(nothing);
  const auto was = FiguresOf(before);
  const auto is = FiguresOf(after);
  const auto row = [&](FigureIndex figure) {
    return Row(was[figure].Label(), was[figure].value, is[figure].value);
  };
  std::ostringstream text;
  text << Line("", "before", "after", "change") << row(kFigure_Loudness)
       << row(kFigure_LoudnessRange) << row(kFigure_SamplePeak) << row(kFigure_TruePeak);
  if (before.width || after.width) {
    text << Row("Side to mid, dB", before.width.value_or(kNone), after.width.value_or(kNone));
  }
  if (std::isfinite(before.noiseFloor) || std::isfinite(after.noiseFloor)) {
    text << row(kFigure_NoiseFloor);
  }
  text << HumRow(before, after);
  return text.str();
}

}  // namespace orvelhost
