#include "host/picture/portrait_collector.h"

namespace orvelhost {

PortraitCollector::PortraitCollector(const AudioFormat& format)
    : format_(format),
      lanes_(format.channelCount == 2 ? 2 : 1),
      loudness_(format),
      spectrum_(format) {}

void PortraitCollector::Add(const AudioBlock& block) {
  const int laneCount = static_cast<int>(lanes_.size());
  for (int lane = 0; lane < laneCount; ++lane) {
    for (std::size_t frame = 0; frame < block.FrameCount(); ++frame) {
      WaveColumn column = WaveColumn::Of(block.Channel(lane)[frame]);
      for (int channel = lane + laneCount; channel < format_.channelCount; ++channel) {
        column.Merge(WaveColumn::Of(block.Channel(channel)[frame]));
      }
      lanes_[static_cast<std::size_t>(lane)].Add(column);
    }
  }
  frameCount_ += static_cast<std::int64_t>(block.FrameCount());
  loudness_.Add(block);
  spectrum_.Add(block);
}

SoundPortrait PortraitCollector::Finish() {
  SoundPortrait portrait{.format = format_,
                         .frameCount = frameCount_,
                         .lanes = {},
                         .framesPerColumn = lanes_.front().ItemsPerCell(),
                         .loudness = loudness_.Points(),
                         .secondsPerPoint = loudness_.SecondsPerPoint(),
                         .spectrum = spectrum_.Finish()};
  for (const MergingRow<WaveColumn>& lane : lanes_) {
    portrait.lanes.push_back(lane.Cells());
  }
  return portrait;
}

}  // namespace orvelhost
