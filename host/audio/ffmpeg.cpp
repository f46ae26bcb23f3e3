#include "host/audio/ffmpeg.h"

#include <array>
#include <mutex>

#include "host/audio/audio_error.h"

namespace orvelhost::ffmpeg {

ChannelLayout::ChannelLayout(const AudioFormat& format) {
  if (format.speakers == 0 || av_channel_layout_from_mask(&layout_, format.speakers) < 0 ||
      layout_.nb_channels != format.channelCount) {
    av_channel_layout_uninit(&layout_);
    av_channel_layout_default(&layout_, format.channelCount);
  }
}

ChannelLayout::ChannelLayout(const AVChannelLayout& layout) {
  if (layout.order == AV_CHANNEL_ORDER_UNSPEC) {
    av_channel_layout_default(&layout_, layout.nb_channels);
  } else if (av_channel_layout_copy(&layout_, &layout) < 0) {
    throw std::bad_alloc();
  }
}

std::uint64_t SpeakersOf(const AVChannelLayout& layout) {
  return layout.order == AV_CHANNEL_ORDER_NATIVE ? layout.u.mask : 0;
}

AudioFormat FormatOf(const AVFrame& frame) {
  return {frame.sample_rate, frame.ch_layout.nb_channels, SpeakersOf(frame.ch_layout)};
}

std::string ErrorText(int code) {
  if (code == kInvalidData) {
    return "the content is damaged or not audio";
  }
  if (code == kEndOfStream) {
    return "the file ends too early";
  }
  std::array<char, AV_ERROR_MAX_STRING_SIZE> text{};
  av_strerror(code, text.data(), text.size());
  return text.data();
}

int Check(int status, const std::string& task) {
  if (status < 0) {
    throw AudioError(task + ": " + ErrorText(status));
  }
  return status;
}

void Silence() {
  static std::once_flag once;
  std::call_once(once, [] { av_log_set_level(AV_LOG_QUIET); });
}

}  // namespace orvelhost::ffmpeg
