#include "host/audio/frame_converter.h"

#include <gtest/gtest.h>

namespace orvelhost::testing {
namespace {

TEST(FrameConverter, AChangeOfRateOnTheWayLosesNoSamples) {
  const AudioFormat mono{44100, 1, 4};
  FrameConverter converter(mono, "cannot convert");
  std::deque<AudioBlock> blocks;
  for (const int sampleRate : {44100, 22050, 44100, 22050}) {
    const ffmpeg::FramePtr frame(av_frame_alloc());
    frame->format = AV_SAMPLE_FMT_S16;
    frame->sample_rate = sampleRate;
    frame->nb_samples = 1000;
    av_channel_layout_default(&frame->ch_layout, 1);
    ASSERT_EQ(av_frame_get_buffer(frame.get(), 0), 0);
    av_samples_set_silence(frame->extended_data, 0, frame->nb_samples, 1, AV_SAMPLE_FMT_S16);
    converter.Convert(*frame, blocks);
  }
  converter.Drain(blocks);
  std::size_t frameCount = 0;
  for (const AudioBlock& block : blocks) {
    EXPECT_EQ(block.Format(), mono);
    frameCount += block.FrameCount();
  }
  EXPECT_NEAR(static_cast<double>(frameCount), 6000.0, 4.0);
}

}  // namespace
}  // namespace orvelhost::testing
