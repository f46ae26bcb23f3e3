#include "host/audio/audio_writer.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <string_view>
#include <vector>

#include <unistd.h>

#include "host/audio/audio_error.h"
#include "host/audio/ffmpeg.h"
#include "host/audio/temporary_file.h"

namespace orvelhost {
namespace {

struct FileKind {
  std::string_view extension;
  const char* muxer;
  AVCodecID codec;
  AVSampleFormat sampleFormat;
  int bitsPerSample;
  int maxChannels;
  int maxSampleRate;
};

// clang-format off
constexpr std::array<FileKind, 2> kFileKinds = {{
    // ending  muxer   codec                  samples             bits  channels                    rate
    {".wav",   "wav",  AV_CODEC_ID_PCM_F32LE, AV_SAMPLE_FMT_FLT,  32,   AudioFormat::kMaxChannels,  AudioFormat::kMaxSampleRate},
    {".flac",  "flac", AV_CODEC_ID_FLAC,      AV_SAMPLE_FMT_S32,  24,   8,                          655350},
}};
// clang-format on

const FileKind* FindKind(const std::filesystem::path& path) {
  const auto kind = std::ranges::find(kFileKinds, EndingOf(path), &FileKind::extension);
  return kind == kFileKinds.end() ? nullptr : &*kind;
}

/// The sample, limited to full scale, in the upper 24 bits, as the encoder takes it.
std::int32_t To24Bit(float sample) {
  constexpr double kFullScale = 8388608.0;
  const double value = std::trunc(static_cast<double>(sample) * kFullScale);
  return static_cast<std::int32_t>(std::clamp(value, -kFullScale, kFullScale - 1)) * 256;
}

}  // namespace

std::string EndingOf(const std::filesystem::path& file) {
  std::string ending = file.extension().string();
  for (char& letter : ending) {
    letter = static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
  }
  return ending;
}

class AudioWriter::Encoder {
 public:
  Encoder(const std::filesystem::path& path, const AudioFormat& format)
      : task_("cannot write " + Quoted(path)), format_(format), kind_(FindKind(path)) {
    ffmpeg::Silence();
    CheckFormat();
    file_ = std::make_unique<TemporaryFile>(path);
    OpenContainer();
    OpenCodec();
    Check(avformat_write_header(container_.get(), nullptr));
  }

  void Write(const AudioBlock& block) {
    if (block.Format() != format_) {
      Fail("a block of another format was given");
    }
    const std::size_t channels = static_cast<std::size_t>(format_.channelCount);
    const std::size_t old = pending_.size();
    pending_.resize(old + block.FrameCount() * channels);
    for (int channel = 0; channel < format_.channelCount; ++channel) {
      std::size_t index = old + static_cast<std::size_t>(channel);
      for (const float sample : block.Channel(channel)) {
        if (kind_->sampleFormat == AV_SAMPLE_FMT_FLT) {
          pending_[index] = std::bit_cast<std::int32_t>(sample);
        } else {
          pending_[index] = To24Bit(sample);
          if (std::abs(sample) > 1.0f) ++cutOffCount_;
        }
        index += channels;
      }
    }
    const std::size_t perFrame = frameSize_ * channels;
    std::size_t done = 0;
    for (; pending_.size() - done >= perFrame; done += perFrame) {
      EncodeFrame(std::span(pending_).subspan(done, perFrame));
    }
    pending_.erase(pending_.begin(), pending_.begin() + static_cast<std::ptrdiff_t>(done));
  }

  std::int64_t CutOffCount() const { return cutOffCount_; }

  void Commit(bool replace) {
    if (!pending_.empty()) {
      EncodeFrame(pending_);
      pending_.clear();
    }
    Check(avcodec_send_frame(codec_.get(), nullptr));
    WritePackets();
    Check(av_write_trailer(container_.get()));
    avio_flush(container_->pb);
    Check(container_->pb->error);
    file_->Commit(replace);
  }

 private:
  struct FreeMuxer {
    void operator()(AVFormatContext* container) const {
      if (container->pb != nullptr) {
        av_freep(&container->pb->buffer);
        avio_context_free(&container->pb);
      }
      avformat_free_context(container);
    }
  };

  [[noreturn]] void Fail(const std::string& cause) const { throw AudioError(task_ + ": " + cause); }

  void Check(int status) const { ffmpeg::Check(status, task_); }

  void CheckFormat() const {
    if (kind_ == nullptr) {
      Fail("its name must end in .wav or .flac");
    }
    const std::string extension(kind_->extension);
    if (format_.channelCount < 1 || format_.channelCount > kind_->maxChannels) {
      Fail(extension + " holds 1 to " + std::to_string(kind_->maxChannels) + " channels, not " +
           std::to_string(format_.channelCount));
    }
    if (format_.sampleRate < 1 || format_.sampleRate > kind_->maxSampleRate) {
      Fail(extension + " holds sample rates up to " + std::to_string(kind_->maxSampleRate) +
           " Hz, not " + std::to_string(format_.sampleRate));
    }
  }

  void OpenContainer() {
    AVFormatContext* container = nullptr;
    Check(avformat_alloc_output_context2(&container, nullptr, kind_->muxer, nullptr));
    container_.reset(container);
    // Leaves out the libraries' version, so that the same audio always gives the same bytes.
    container->flags |= AVFMT_FLAG_BITEXACT;
    if (kind_->codec == AV_CODEC_ID_PCM_F32LE) {
      Check(av_opt_set(container, "rf64", "auto", AV_OPT_SEARCH_CHILDREN));
    }
    constexpr int kBufferSize = 1 << 16;
    auto* buffer = static_cast<unsigned char*>(av_malloc(kBufferSize));
    container->pb =
        avio_alloc_context(buffer, kBufferSize, 1, file_.get(), nullptr, &WriteBytes, &Seek);
    if (container->pb == nullptr) {
      av_free(buffer);
      throw std::bad_alloc();
    }
  }

  void OpenCodec() {
    const AVCodec* codec = avcodec_find_encoder(kind_->codec);
    if (codec == nullptr) {
      Fail("the FFmpeg libraries of this machine lack its encoder");
    }
    codec_.reset(avcodec_alloc_context3(codec));
    codec_->sample_fmt = kind_->sampleFormat;
    codec_->bits_per_raw_sample = kind_->bitsPerSample;
    codec_->sample_rate = format_.sampleRate;
    codec_->time_base = {1, format_.sampleRate};
    codec_->flags |= AV_CODEC_FLAG_BITEXACT;
    constexpr int kLeftAndRight = 2;
    if (kind_->codec == AV_CODEC_ID_PCM_F32LE && format_.speakers == 0 &&
        format_.channelCount > kLeftAndRight) {
      codec_->ch_layout.nb_channels = format_.channelCount;  // and what they are for stays open
    } else {
      Check(av_channel_layout_copy(&codec_->ch_layout, &ffmpeg::ChannelLayout(format_).Get()));
    }
    Check(avcodec_open2(codec_.get(), codec, nullptr));
    constexpr std::size_t kFreeFrameSize = 4096;  // for codecs that take frames of any size
    frameSize_ =
        codec_->frame_size > 0 ? static_cast<std::size_t>(codec_->frame_size) : kFreeFrameSize;

    AVStream* stream = avformat_new_stream(container_.get(), nullptr);
    if (stream == nullptr) {
      throw std::bad_alloc();
    }
    stream->time_base = codec_->time_base;
    Check(avcodec_parameters_from_context(stream->codecpar, codec_.get()));
  }

  void EncodeFrame(std::span<const std::int32_t> samples) {
    const std::size_t frames = samples.size() / static_cast<std::size_t>(format_.channelCount);
    const ffmpeg::FramePtr frame(av_frame_alloc());
    frame->format = kind_->sampleFormat;
    frame->sample_rate = format_.sampleRate;
    frame->nb_samples = static_cast<int>(frames);
    frame->pts = position_;
    Check(av_channel_layout_copy(&frame->ch_layout, &codec_->ch_layout));
    Check(av_frame_get_buffer(frame.get(), 0));
    std::memcpy(frame->data[0], samples.data(), samples.size_bytes());
    position_ += static_cast<std::int64_t>(frames);
    Check(avcodec_send_frame(codec_.get(), frame.get()));
    WritePackets();
  }

  void WritePackets() {
    while (avcodec_receive_packet(codec_.get(), packet_.get()) == 0) {
      packet_->stream_index = 0;
      av_packet_rescale_ts(packet_.get(), codec_->time_base, container_->streams[0]->time_base);
      Check(av_interleaved_write_frame(container_.get(), packet_.get()));
    }
    // A device that is full shows here first; the muxer may not pass it on.
    Check(container_->pb->error);
  }

  static int WriteBytes(void* file, std::uint8_t* bytes, int count) {
    const int error =
        static_cast<TemporaryFile*>(file)->Write(bytes, static_cast<std::size_t>(count));
    return error == 0 ? count : -error;
  }

  static std::int64_t Seek(void* file, std::int64_t offset, int whence) {
    const int descriptor = static_cast<TemporaryFile*>(file)->Descriptor();
    if ((whence & AVSEEK_SIZE) != 0) {
      const off_t position = lseek(descriptor, 0, SEEK_CUR);
      const off_t size = lseek(descriptor, 0, SEEK_END);
      lseek(descriptor, position, SEEK_SET);
      return size;
    }
    const off_t position = lseek(descriptor, offset, whence & ~AVSEEK_FORCE);
    return position < 0 ? -errno : position;
  }

  std::string task_;
  AudioFormat format_;
  const FileKind* kind_;
  std::unique_ptr<TemporaryFile> file_;
  std::unique_ptr<AVFormatContext, FreeMuxer> container_;
  ffmpeg::EncoderPtr codec_;
  ffmpeg::PacketPtr packet_{av_packet_alloc()};
  std::size_t frameSize_ = 0;
  std::int64_t position_ = 0;
  std::int64_t cutOffCount_ = 0;
  /// Interleaved samples that do not fill a frame yet; floats stand here by their bits.
  std::vector<std::int32_t> pending_;
};

AudioWriter::AudioWriter(const std::filesystem::path& path, const AudioFormat& format)
    : encoder_(std::make_unique<Encoder>(path, format)) {}
AudioWriter::~AudioWriter() = default;
AudioWriter::AudioWriter(AudioWriter&&) noexcept = default;
AudioWriter& AudioWriter::operator=(AudioWriter&&) noexcept = default;

void AudioWriter::Write(const AudioBlock& block) { encoder_->Write(block); }
std::int64_t AudioWriter::CutOffCount() const { return encoder_->CutOffCount(); }
void AudioWriter::Commit(bool replace) { encoder_->Commit(replace); }

bool AudioWriter::IsSupported(const std::filesystem::path& path) {
  return FindKind(path) != nullptr;
}

}  // namespace orvelhost
