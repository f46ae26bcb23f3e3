#include "host/analysis/analysis_report.h"

#include <cmath>
#include <cstdio>
#include <limits>
#include <vector>

namespace orvelhost {
namespace {

using teskcore::serialization::AddToObject;
using teskcore::serialization::G_NullType;
using teskcore::serialization::JSONValue;

/// One measured number; not finite when there is none.
struct Row {
  const char* key;
  const char* name;
  const char* unit;
  double value;
};

std::vector<Row> RowsOf(const ClipAnalysis& analysis) {
  constexpr double kNone = -std::numeric_limits<double>::infinity();
  const Hum hum = analysis.hum.value_or(Hum{kNone, kNone});
  // clang-format off
  return {
      // key                   name               unit    value
      {"integrated_lufs",     "Loudness",        "LUFS", analysis.loudness},
      {"loudness_range_lu",   "Loudness range",  "LU",   analysis.loudnessRange},
      {"true_peak_dbtp",      "True peak",       "dBTP", analysis.truePeak},
      {"sample_peak_dbfs",    "Sample peak",     "dBFS", analysis.samplePeak},
      {"noise_floor_dbfs",    "Noise floor",     "dBFS", analysis.noiseFloor},
      {"hum_hz",              "Hum",             "Hz",   hum.frequency},
      {"hum_dbfs",            "Level of hum",    "dBFS", hum.level},
      {"duration_s",          "Duration",        "s",    analysis.Duration()},
  };
  // clang-format on
}

}  // namespace

JSONValue ToJSON(const std::string& file, const ClipAnalysis& analysis) {
  JSONValue object;
  AddToObject(object, "file", JSONValue(file));
  for (const Row& row : RowsOf(analysis)) {
    AddToObject(object, row.key,
                std::isfinite(row.value) ? JSONValue(row.value) : JSONValue(G_NullType));
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
  for (const Row& row : RowsOf(analysis)) {
    if (std::isfinite(row.value)) {
      add("  %-16s %10.2f %s\n", row.name, row.value, row.unit);
    } else {
      add("  %-16s %10s\n", row.name, "none");
    }
  }
  add("  %-16s %10d Hz\n", "Sample rate", analysis.format.sampleRate);
  add("  %-16s %10d\n", "Channels", analysis.format.channelCount);
  return text;
}

}  // namespace orvelhost
