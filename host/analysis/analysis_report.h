#pragma once

#include <string>

#include "host/analysis/clip_analysis.h"
#include "orvel/orvel.h"

namespace orvelhost {

/// A file's analysis as JSON: `file`, `integrated_lufs`, `loudness_range_lu`, `true_peak_dbtp`,
/// `sample_peak_dbfs`, `noise_floor_dbfs`, `hum_hz`, `hum_dbfs`, `duration_s`, `sample_rate`,
/// `channels`. Null stands for minus infinity, which JSON cannot write, and for hum that is not
/// there.
teskcore::serialization::JSONValue ToJSON(const std::string& file, const ClipAnalysis& analysis);

/// The same for people.
std::string ToText(const std::string& file, const ClipAnalysis& analysis);

}  // namespace orvelhost
