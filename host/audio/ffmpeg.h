#pragma once

#include <memory>
#include <string>

// The macros of these headers are written for C.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wold-style-cast"
extern "C" {
#include <libavcodec/avcodec.h>
#include <libavfilter/avfilter.h>
#include <libavfilter/buffersink.h>
#include <libavfilter/buffersrc.h>
#include <libavformat/avformat.h>
#include <libavutil/channel_layout.h>
#include <libavutil/mem.h>
#include <libavutil/murmur3.h>
#include <libavutil/opt.h>
#include <libavutil/tx.h>
#include <libswresample/swresample.h>
}
namespace orvelhost::ffmpeg {
inline constexpr int kEndOfStream = AVERROR_EOF;
inline constexpr int kTryAgain = AVERROR(EAGAIN);
inline constexpr int kInvalidData = AVERROR_INVALIDDATA;
inline constexpr int kNoDecoder = AVERROR_DECODER_NOT_FOUND;
inline constexpr std::int64_t kNoTime = AV_NOPTS_VALUE;
}  // namespace orvelhost::ffmpeg
#pragma GCC diagnostic pop

#include "host/audio/audio_block.h"

namespace orvelhost::ffmpeg {

/// Frees through the functions that take the address of the pointer.
template <auto kFree>
struct FreeByAddress {
  template <typename T>
  void operator()(T* object) const {
    kFree(&object);
  }
};

/// Frees what the library's memory functions gave.
struct FreeMemory {
  void operator()(void* memory) const { av_free(memory); }
};

using PacketPtr = std::unique_ptr<AVPacket, FreeByAddress<av_packet_free>>;
using FramePtr = std::unique_ptr<AVFrame, FreeByAddress<av_frame_free>>;
using DecoderPtr = std::unique_ptr<AVCodecContext, FreeByAddress<avcodec_free_context>>;
using EncoderPtr = DecoderPtr;
using DemuxerPtr = std::unique_ptr<AVFormatContext, FreeByAddress<avformat_close_input>>;
using ResamplerPtr = std::unique_ptr<SwrContext, FreeByAddress<swr_free>>;
using HashPtr = std::unique_ptr<AVMurMur3, FreeMemory>;
using GraphPtr = std::unique_ptr<AVFilterGraph, FreeByAddress<avfilter_graph_free>>;

/// A channel layout with an owner. Copies are deep.
class ChannelLayout {
 public:
  /// The layout of `format`; with unknown speakers, the usual one for that number of channels.
  explicit ChannelLayout(const AudioFormat& format);
  /// A copy of `layout`, its speakers filled in with the usual ones when it names none.
  explicit ChannelLayout(const AVChannelLayout& layout);
  ChannelLayout(const ChannelLayout&) = delete;
  ChannelLayout& operator=(const ChannelLayout&) = delete;
  ~ChannelLayout() { av_channel_layout_uninit(&layout_); }

  const AVChannelLayout& Get() const { return layout_; }
  /// For the functions that only read the layout and do not say so.
  AVChannelLayout* GetMutable() { return &layout_; }

 private:
  AVChannelLayout layout_{};
};

/// The speakers in the meaning of AudioFormat.
std::uint64_t SpeakersOf(const AVChannelLayout& layout);

/// The format of a decoded frame.
AudioFormat FormatOf(const AVFrame& frame);

/// The cause behind an error code, in words.
std::string ErrorText(int code);

/// Throws an AudioError that begins with `task` when `status` is an error code; gives it back
/// otherwise.
int Check(int status, const std::string& task);

/// Keeps the libraries from writing to the terminal; every failure is reported by an AudioError.
void Silence();

}  // namespace orvelhost::ffmpeg
