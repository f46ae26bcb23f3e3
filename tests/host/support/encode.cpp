#include "tests/host/support/encode.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <vector>

#include "host/audio/ffmpeg.h"

namespace orvelhost::testing {
namespace {

int Check(int status) {
  if (status < 0) {
    throw std::runtime_error(ffmpeg::ErrorText(status));
  }
  return status;
}

struct FreeMuxer {
  void operator()(AVFormatContext* muxer) const {
    avio_closep(&muxer->pb);
    avformat_free_context(muxer);
  }
};
using MuxerPtr = std::unique_ptr<AVFormatContext, FreeMuxer>;

/// One stream of the file with its encoder.
class Stream {
 public:
  Stream(AVFormatContext* muxer, const std::string& encoder)
      : muxer_(muxer), stream_(avformat_new_stream(muxer, nullptr)) {
    const AVCodec* found = avcodec_find_encoder_by_name(encoder.c_str());
    if (found == nullptr) {
      throw std::runtime_error("no encoder " + encoder);
    }
    codec_.reset(avcodec_alloc_context3(found));
    if ((muxer->oformat->flags & AVFMT_GLOBALHEADER) != 0) {
      codec_->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    }
  }

  AVCodecContext* Codec() { return codec_.get(); }

  void Open() {
    Check(avcodec_open2(codec_.get(), codec_->codec, nullptr));
    stream_->time_base = codec_->time_base;
    Check(avcodec_parameters_from_context(stream_->codecpar, codec_.get()));
  }

  void Send(const AVFrame* frame) {
    Check(avcodec_send_frame(codec_.get(), frame));
    while (avcodec_receive_packet(codec_.get(), packet_.get()) == 0) {
      packet_->stream_index = stream_->index;
      av_packet_rescale_ts(packet_.get(), codec_->time_base, stream_->time_base);
      Check(av_interleaved_write_frame(muxer_, packet_.get()));
    }
  }

 private:
  AVFormatContext* muxer_;
  AVStream* stream_;
  ffmpeg::EncoderPtr codec_;
  ffmpeg::PacketPtr packet_{av_packet_alloc()};
};

void SetUpAudio(Stream& stream, const AudioFormat& format) {
  AVCodecContext* codec = stream.Codec();
  codec->sample_rate = format.sampleRate;
  codec->sample_fmt = codec->codec->sample_fmts[0];
  codec->time_base = {1, format.sampleRate};
  codec->bit_rate = 128000L * format.channelCount;
  Check(av_channel_layout_copy(&codec->ch_layout, &ffmpeg::ChannelLayout(format).Get()));
  stream.Open();
}

void SendAudio(Stream& stream, const AudioBlock& block) {
  AVCodecContext* codec = stream.Codec();
  SwrContext* allocated = nullptr;
  Check(swr_alloc_set_opts2(&allocated, &codec->ch_layout, codec->sample_fmt, codec->sample_rate,
                            &codec->ch_layout, AV_SAMPLE_FMT_FLTP, codec->sample_rate, 0, nullptr));
  const ffmpeg::ResamplerPtr converter(allocated);
  Check(swr_init(converter.get()));
  const std::size_t frameSize =
      codec->frame_size > 0 ? static_cast<std::size_t>(codec->frame_size) : 1024;
  for (std::size_t begin = 0; begin < block.FrameCount(); begin += frameSize) {
    const std::size_t count = std::min(frameSize, block.FrameCount() - begin);
    const ffmpeg::FramePtr frame(av_frame_alloc());
    frame->format = codec->sample_fmt;
    frame->sample_rate = codec->sample_rate;
    frame->nb_samples = static_cast<int>(count);
    frame->pts = static_cast<std::int64_t>(begin);
    Check(av_channel_layout_copy(&frame->ch_layout, &codec->ch_layout));
    Check(av_frame_get_buffer(frame.get(), 0));
    std::vector<const std::uint8_t*> rows;
    for (int channel = 0; channel < block.ChannelCount(); ++channel) {
      rows.push_back(reinterpret_cast<const std::uint8_t*>(&block.Channel(channel)[begin]));
    }
    Check(swr_convert(converter.get(), frame->extended_data, frame->nb_samples, rows.data(),
                      frame->nb_samples));
    stream.Send(frame.get());
  }
  stream.Send(nullptr);
}

void SetUpFilm(Stream& stream) {
  AVCodecContext* codec = stream.Codec();
  codec->width = 64;
  codec->height = 48;
  codec->pix_fmt = AV_PIX_FMT_YUV420P;
  codec->time_base = {1, 25};
  stream.Open();
}

void SendFilm(Stream& stream) {
  for (int picture = 0; picture < 5; ++picture) {
    const ffmpeg::FramePtr frame(av_frame_alloc());
    frame->format = AV_PIX_FMT_YUV420P;
    frame->width = stream.Codec()->width;
    frame->height = stream.Codec()->height;
    frame->pts = picture;
    Check(av_frame_get_buffer(frame.get(), 0));
    for (int plane = 0; plane < 3; ++plane) {
      const int rows = plane == 0 ? frame->height : frame->height / 2;
      std::memset(frame->data[plane], 128, static_cast<std::size_t>(frame->linesize[plane] * rows));
    }
    stream.Send(frame.get());
  }
  stream.Send(nullptr);
}

}  // namespace

void Encode(const std::filesystem::path& path, const std::string& encoder, const AudioBlock& block,
            bool withFilm) {
  ffmpeg::Silence();
  AVFormatContext* allocated = nullptr;
  Check(avformat_alloc_output_context2(&allocated, nullptr, nullptr, path.c_str()));
  const MuxerPtr muxer(allocated);
  std::unique_ptr<Stream> film;
  if (withFilm) {
    film = std::make_unique<Stream>(muxer.get(), "mpeg4");
    SetUpFilm(*film);
  }
  std::unique_ptr<Stream> audio;
  if (block.FrameCount() > 0) {
    audio = std::make_unique<Stream>(muxer.get(), encoder);
    SetUpAudio(*audio, block.Format());
  }
  Check(avio_open(&muxer->pb, path.c_str(), AVIO_FLAG_WRITE));
  Check(avformat_write_header(muxer.get(), nullptr));
  if (film) {
    SendFilm(*film);
  }
  if (audio) {
    SendAudio(*audio, block);
  }
  Check(av_write_trailer(muxer.get()));
}

}  // namespace orvelhost::testing
