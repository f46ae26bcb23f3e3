#pragma once

#include <deque>
#include <string>

#include "host/audio/ffmpeg.h"

namespace orvelhost {

/// Turns decoded frames, whose format may change from one to the next, into blocks of one format.
class FrameConverter {
 public:
  /// `task` begins the messages of errors.
  FrameConverter(const AudioFormat& format, const std::string& task)
      : format_(format), task_(task) {}

  /// Appends the frame's samples to `blocks`. Throws AudioError when they cannot be converted.
  void Convert(const AVFrame& frame, std::deque<AudioBlock>& blocks);

  /// Appends what a change of the sample rate still holds back. Call it behind the last frame.
  void Drain(std::deque<AudioBlock>& blocks);

 private:
  void Configure(const AVFrame& frame);
  void Run(const AVFrame* frame, std::deque<AudioBlock>& blocks);

  AudioFormat format_;
  std::string task_;
  ffmpeg::ResamplerPtr resampler_;
  AudioFormat inputFormat_;
  int inputSampleFormat_ = AV_SAMPLE_FMT_NONE;
};

}  // namespace orvelhost
