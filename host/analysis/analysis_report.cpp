#include "host/analysis/analysis_report.h"

#include <cmath>
#include <cstdio>
#include <limits>

namespace orvelhost {
namespace {

using teskcore::serialization::AddToObject;
using teskcore::serialization::G_NullType;
using teskcore::serialization::JSONValue;

}  // namespace

std::array<Figure, kFigure_Count> FiguresOf(const ClipAnalysis& analysis) {
  constexpr double kNone = -std::numeric_limits<double>::infinity();
  const Hum hum = analysis.hum.value_or(Hum{kNone, kNone});
  // clang-format off
  return {{
      // in the order of FigureIndex:
      // key                   name               unit    value
      {"integrated_lufs",     "Loudness",        "LUFS", analysis.loudness},
      {"loudness_range_lu",   "Loudness range",  "LU",   analysis.loudnessRange},
      {"true_peak_dbtp",      "True peak",       "dBTP", analysis.truePeak},
      {"sample_peak_dbfs",    "Sample peak",     "dBFS", analysis.samplePeak},
      {"noise_floor_dbfs",    "Noise floor",     "dBFS", analysis.noiseFloor},
      {"hum_hz",              "Hum",             "Hz",   hum.frequency},
      {"hum_dbfs",            "Level of hum",    "dBFS", hum.level},
      {"duration_s",          "Duration",        "s",    analysis.Duration()},
  }};
  // clang-format on
}

JSONValue ToJSON(const std::string& file, const ClipAnalysis& analysis) {
  JSONValue object;
  AddToObject(object, "file", JSONValue(file));
  for (const Figure& figure : FiguresOf(analysis)) {
    AddToObject(object, figure.key,
                std::isfinite(figure.value) ? JSONValue(figure.value) : JSONValue(G_NullType));
  }
  AddToObject(object, "sample_rate", JSONValue(std::int64_t{analysis.format.sampleRate}));
  AddToObject(object, "channels", JSONValue(std::int64_t{analysis.format.channelCount}));
  return object;
}

std::string ToText(const std::string& file, const ClipAnalysis& analysis) {
  std::string text = file + "\n";
  const auto add = [&text](const char* format, auto... values) {
    char line[128];
    std::snprintf(line, sizeof line, format, values...);
    text += line;
  };
  for (const Figure& figure : FiguresOf(analysis)) {
    if (std::isfinite(figure.value)) {
      add("  %-16s %10.2f %s\n", figure.name, figure.value, figure.unit);
    } else {
      add("  %-16s %10s\n", figure.name, "none");
    }
  }
  add("  %-16s %10d Hz\n", "Sample rate", analysis.format.sampleRate);
  add("  %-16s %10d\n", "Channels", analysis.format.channelCount);
  return text;
}

}  // namespace orvelhost
