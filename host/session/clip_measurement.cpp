#include "host/session/clip_measurement.h"

#include <string>
#include <utility>

namespace orvelhost {
namespace {

/// `keep(name, pass)` gives what the pass of this name gives.
template <typename Keep>
ClipMeasurement Measure(const AudioOpener& audio, bool withRemix, const Progress& progress,
                        const Keep& keep) {
  // Shares of the time: the first pass looks at more than the second, the third at most.
  const double first = withRemix ? 0.35 : 0.7;
  const double second = withRemix ? 0.5 : 1.0;
  ClipMeasurement measurement;
  measurement.analysis =
      keep("analysis", [&] { return AnalyzeClip(*audio(), StepOf(progress, 0.0, first)); });
  measurement.noise = keep("noise", [&] {
    return MeasureNoiseProfile(*audio(), measurement.analysis.hum, StepOf(progress, first, second));
  });
  if (withRemix) {
    measurement.isMapped = true;
    measurement.remix = keep("remix", [&]() -> std::shared_ptr<const RemixMap> {
      auto map = MapForRemix(*audio(), StepOf(progress, second, 1.0));
      return map ? std::make_shared<const RemixMap>(*std::move(map)) : nullptr;
    });
  }
  return measurement;
}

}  // namespace

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
  return Measure(audio, withRemix, progress,
                 [](const char* /*name*/, const auto& pass) { return pass(); });
}

ClipMeasurement MeasureFile(const std::filesystem::path& path, bool withRemix, AnalysisCache& cache,
                            const Progress& progress) {
  const std::string content = ContentKey(path, progress);
  return Measure(OpenerOf(path), withRemix, progress, [&](const char* name, const auto& pass) {
    return cache.Get(content, name, pass);
  });
}

}  // namespace orvelhost
