#include "host/analysis/clip_analysis.h"

#include "host/analysis/noise_floor.h"
#include "host/audio/level_meter.h"

namespace orvelhost {

ClipAnalysis AnalyzeClip(AudioSource& source, const Progress& progress) {
  const AudioFormat format = source.Format();
  LevelMeter levelMeter(format);
  NoiseFloorMeter noiseFloor(format);
  HumFinder hum(format);
  DynamicsMeter dynamics(format);
  ProgressingReader reader(source, progress);
  for (AudioBlock block; reader.Read(block);) {
    levelMeter.Add(block);
    noiseFloor.Add(block);
    hum.Add(block);
    dynamics.Add(block);
  }
  const Levels levels = levelMeter.Measure();
  return {.format = format,
          .frameCount = reader.FrameCount(),
          .loudness = levels.loudness,
          .loudnessRange = levels.loudnessRange,
          .truePeak = levels.truePeak,
          .samplePeak = levels.samplePeak,
          .noiseFloor = noiseFloor.Measure(),
          .hum = hum.Find(),
          .dynamics = dynamics.Measure()};
}

}  // namespace orvelhost
