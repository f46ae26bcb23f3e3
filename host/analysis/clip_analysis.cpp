#include "host/analysis/clip_analysis.h"

#include <limits>

namespace orvelhost {

ClipMeter::ClipMeter(const AudioFormat& format, AnalysisDetail detail)
    : format_(format), levels_(format) {
  if (detail == AnalysisDetail::kAll) {
    finders_ = Finders{NoiseFloorMeter(format), HumFinder(format), DynamicsMeter(format)};
  }
}

void ClipMeter::Add(const AudioBlock& block) {
  frameCount_ += static_cast<std::int64_t>(block.FrameCount());
  levels_.Add(block);
  if (finders_) {
    finders_->noiseFloor.Add(block);
    finders_->hum.Add(block);
    finders_->dynamics.Add(block);
  }
}

ClipAnalysis ClipMeter::Measure() const {
  const Levels levels = levels_.Measure();
  ClipAnalysis analysis{.format = format_,
                        .frameCount = frameCount_,
                        .loudness = levels.loudness,
                        .loudnessRange = levels.loudnessRange,
                        .truePeak = levels.truePeak,
                        .samplePeak = levels.samplePeak,
                        .width = levels.width,
                        .noiseFloor = std::numeric_limits<double>::quiet_NaN(),
                        .hum = std::nullopt,
                        .dynamics = std::nullopt};
  if (finders_) {
    analysis.noiseFloor = finders_->noiseFloor.Measure();
    analysis.hum = finders_->hum.Find();
    analysis.dynamics = finders_->dynamics.Measure();
  }
  return analysis;
}

ClipAnalysis AnalyzeClip(AudioSource& source, const Progress& progress) {
  ClipMeter meter(source.Format());
  ProgressingReader reader(source, progress);
  for (AudioBlock block; reader.Read(block);) meter.Add(block);
  return meter.Measure();
}

}  // namespace orvelhost
