#include "host/session/clip_measurement.h"

namespace orvelhost {

EffectContext ContextOf(const AudioFormat& format,
                        const std::optional<ClipMeasurement>& measurement) {
  EffectContext context{format};
  if (measurement) {
    if (measurement->analysis.hum) context.humFrequency = measurement->analysis.hum->frequency;
    context.noise = measurement->noise;
  }
  return context;
}

ClipMeasurement MeasureClip(const AudioOpener& audio, bool withRemix, const Progress& progress) {
  // Shares of the time: the first pass looks at more than the second, the third at most.
  const double first = withRemix ? 0.35 : 0.7;
  const double second = withRemix ? 0.5 : 1.0;
  ClipMeasurement measurement;
  measurement.analysis = AnalyzeClip(*audio(), StepOf(progress, 0.0, first));
  measurement.noise =
      MeasureNoiseProfile(*audio(), measurement.analysis.hum, StepOf(progress, first, second));
  if (withRemix) {
    measurement.isMapped = true;
    measurement.remix = MapForRemix(*audio(), StepOf(progress, second, 1.0));
  }
  return measurement;
}

}  // namespace orvelhost
