#include "host/session/clip_measurement.h"

namespace orvelhost {

ClipMeasurement MeasureClip(const AudioOpener& audio, const Progress& progress) {
  constexpr double kFirstPass = 0.7;  // share of the time; it looks at more
  ClipMeasurement measurement;
  measurement.analysis = AnalyzeClip(*audio(), StepOf(progress, 0.0, kFirstPass));
  measurement.noise =
      MeasureNoiseProfile(*audio(), measurement.analysis.hum, StepOf(progress, kFirstPass, 1.0));
  return measurement;
}

}  // namespace orvelhost
