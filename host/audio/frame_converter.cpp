#include "host/audio/frame_converter.h"

#include <vector>

namespace orvelhost {

void FrameConverter::Convert(const AVFrame& frame, std::deque<AudioBlock>& blocks) {
  if (!resampler_ || ffmpeg::FormatOf(frame) != inputFormat_ ||
      frame.format != inputSampleFormat_) {
    Drain(blocks);
    Configure(frame);
  }
  Run(&frame, blocks);
}

void FrameConverter::Drain(std::deque<AudioBlock>& blocks) {
  if (resampler_) {
    Run(nullptr, blocks);
  }
}

void FrameConverter::Configure(const AVFrame& frame) {
  // Channels that stand for no speakers, as in ambisonics, cannot be mixed, but they can be kept.
  const bool isKept = frame.ch_layout.order != AV_CHANNEL_ORDER_NATIVE &&
                      frame.ch_layout.nb_channels == format_.channelCount;
  ffmpeg::ChannelLayout to(format_);
  ffmpeg::ChannelLayout from =
      isKept ? ffmpeg::ChannelLayout(format_) : ffmpeg::ChannelLayout(frame.ch_layout);
  SwrContext* resampler = nullptr;
  ffmpeg::Check(
      swr_alloc_set_opts2(&resampler, to.GetMutable(), AV_SAMPLE_FMT_FLTP, format_.sampleRate,
                          from.GetMutable(), static_cast<AVSampleFormat>(frame.format),
                          frame.sample_rate, 0, nullptr),
      task_);
  resampler_.reset(resampler);
  ffmpeg::Check(swr_init(resampler), task_);
  inputFormat_ = ffmpeg::FormatOf(frame);
  inputSampleFormat_ = frame.format;
}

void FrameConverter::Run(const AVFrame* frame, std::deque<AudioBlock>& blocks) {
  const int count = frame == nullptr ? 0 : frame->nb_samples;
  const int room = ffmpeg::Check(swr_get_out_samples(resampler_.get(), count), task_);
  if (room == 0) {
    return;
  }
  AudioBlock block(format_, static_cast<std::size_t>(room));
  std::vector<std::uint8_t*> rows;
  rows.reserve(static_cast<std::size_t>(format_.channelCount));
  for (int channel = 0; channel < format_.channelCount; ++channel) {
    rows.push_back(reinterpret_cast<std::uint8_t*>(block.Channel(channel).data()));
  }
  std::uint8_t** planes = frame == nullptr ? nullptr : frame->extended_data;
  const int done = ffmpeg::Check(swr_convert(resampler_.get(), rows.data(), room,
                                             const_cast<const std::uint8_t**>(planes), count),
                                 task_);
  if (done == room) {
    blocks.push_back(std::move(block));
  } else if (done > 0) {
    blocks.push_back(block.Part(0, static_cast<std::size_t>(done)));
  }
}

}  // namespace orvelhost
