#include "host/audio/audio_reader.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <deque>
#include <fstream>
#include <optional>
#include <system_error>
#include <utility>

#include "host/audio/audio_error.h"
#include "host/audio/ffmpeg.h"
#include "host/audio/frame_converter.h"

namespace orvelhost {
namespace {

/// +200 dBFS. Files whose float samples count in whole numbers stay below; what is above is damage,
/// and would drive later arithmetic to infinity.
constexpr float kLargestSample = 1e10f;

std::size_t SilenceImpossibleSamples(AudioBlock& block) {
  std::size_t silenced = 0;
  for (int channel = 0; channel < block.ChannelCount(); ++channel) {
    for (float& sample : block.Channel(channel)) {
      if (!(std::fabs(sample) <= kLargestSample)) {  // written so that a NaN is caught, too
        sample = 0.0f;
        ++silenced;
      }
    }
  }
  return silenced;
}

}  // namespace

class AudioReader::Decoder {
 public:
  Decoder(const std::filesystem::path& path, const std::filesystem::path& name)
      : path_(path), name_(Quoted(name)), task_("cannot read " + name_) {
    ffmpeg::Silence();
    CheckFile();
    OpenContainer();
    OpenCodec();
    DecodeStart();
  }

  const AudioFormat& Format() const { return format_; }

  std::int64_t StatedFrameCount() const {
    const AVRational perFrame{1, format_.sampleRate};
    if (stream_->duration != ffmpeg::kNoTime) {
      return std::max<std::int64_t>(0,
                                    av_rescale_q(stream_->duration, stream_->time_base, perFrame));
    }
    if (container_->duration != ffmpeg::kNoTime) {
      return std::max<std::int64_t>(
          0, av_rescale_q(container_->duration, AVRational{1, AV_TIME_BASE}, perFrame));
    }
    return 0;
  }

  bool Read(AudioBlock& block) {
    while (ready_.empty()) {
      if (ended_) {
        return false;
      }
      if (DecodeFrame()) {
        converter_->Convert(*frame_, ready_);
      } else {
        converter_->Drain(ready_);
        ended_ = true;
      }
    }
    block = std::move(ready_.front());
    ready_.pop_front();
    silencedSamples_ += SilenceImpossibleSamples(block);
    frameCount_ += static_cast<std::int64_t>(block.FrameCount());
    return true;
  }

  std::vector<std::string> Notes() const {
    std::vector<std::string> notes;
    if (damagedPackets_ > 0) {
      notes.push_back(name_ + ": " + std::to_string(damagedPackets_) +
                      " damaged stretch(es) could not be decoded and were left out");
    }
    if (silencedSamples_ > 0) {
      notes.push_back(name_ + ": " + std::to_string(silencedSamples_) +
                      " sample(s) that are no number or impossibly large were read as silence");
    }
    if (readError_ != 0) {
      notes.push_back(name_ + ": reading stopped early: " + ffmpeg::ErrorText(readError_));
    } else if (EndedEarly()) {
      notes.push_back(name_ + " ends before its stated length; it may be cut off");
    }
    return notes;
  }

 private:
  [[noreturn]] void Fail(const std::string& cause) const { throw AudioError(task_ + ": " + cause); }

  void Check(int status) const { ffmpeg::Check(status, task_); }

  /// Gives plain words for what the demuxer would report in its own.
  void CheckFile() const {
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path_, error);
    if (error) {
      Fail(error.message());
    }
    if (std::filesystem::is_directory(status)) {
      Fail("it is a folder");
    }
    if (std::filesystem::is_fifo(status)) {
      Fail("it is a pipe, which cannot be read twice");
    }
    if (std::filesystem::is_regular_file(status) && std::filesystem::file_size(path_, error) == 0 &&
        !error) {
      Fail("the file is empty");
    }
  }

  void OpenContainer() {
    // The prefix keeps a name such as "concat:x" from being taken for a protocol, and the list a
    // playlist from reaching for the network.
    AVDictionary* options = nullptr;
    av_dict_set(&options, "protocol_whitelist", "file", 0);
    AVFormatContext* container = nullptr;
    const int opened =
        avformat_open_input(&container, ("file:" + path_.string()).c_str(), nullptr, &options);
    av_dict_free(&options);
    Check(opened);
    container_.reset(container);
    Check(avformat_find_stream_info(container, nullptr));

    const AVCodec* codec = nullptr;
    const int index = av_find_best_stream(container, AVMEDIA_TYPE_AUDIO, -1, -1, &codec, 0);
    if (index < 0) {
      Fail(index == ffmpeg::kNoDecoder ? "its audio is of an unknown kind" : "it has no audio");
    }
    stream_ = container->streams[index];
    for (unsigned other = 0; other < container->nb_streams; ++other) {
      if (container->streams[other] != stream_) {
        container->streams[other]->discard = AVDISCARD_ALL;
      }
    }
    codec_ = codec;
  }

  void OpenCodec() {
    decoder_.reset(avcodec_alloc_context3(codec_));
    Check(avcodec_parameters_to_context(decoder_.get(), stream_->codecpar));
    // Without it the decoder cannot place, and so not remove, the samples that the encoder added.
    decoder_->pkt_timebase = stream_->time_base;
    if (codec_->id == AV_CODEC_ID_FLAC) {
      // Decoded all the same, a damaged frame would be noise at full scale. Other codecs conceal
      // what is damaged, and many of their files carry checksums that were never right.
      decoder_->err_recognition |= AV_EF_CRCCHECK | AV_EF_EXPLODE;
    }
    Check(avcodec_open2(decoder_.get(), codec_, nullptr));
  }

  /// Some codecs know their rate only once a frame is decoded, so the format is that of the first.
  void DecodeStart() {
    if (!DecodeFrame()) {
      Fail(damagedPackets_ + damageAtCut_ > 0 ? ffmpeg::ErrorText(ffmpeg::kInvalidData)
                                              : "its audio track is empty");
    }
    format_ = ffmpeg::FormatOf(*frame_);
    if (format_.channelCount < 1 || format_.channelCount > AudioFormat::kMaxChannels) {
      Fail("it has " + std::to_string(format_.channelCount) + " channels, and at most " +
           std::to_string(AudioFormat::kMaxChannels) + " can be read");
    }
    if (format_.sampleRate < AudioFormat::kMinSampleRate ||
        format_.sampleRate > AudioFormat::kMaxSampleRate) {
      Fail("its sample rate is " + std::to_string(format_.sampleRate) + " Hz, and " +
           std::to_string(AudioFormat::kMinSampleRate) + ".." +
           std::to_string(AudioFormat::kMaxSampleRate) + " can be read");
    }
    converter_.emplace(format_, task_);
    converter_->Convert(*frame_, ready_);
  }

  /// Puts the next decoded frame into frame_; false when there is none any more.
  bool DecodeFrame() {
    while (true) {
      const int received = avcodec_receive_frame(decoder_.get(), frame_.get());
      if (received == 0) {
        // The MP3 decoder labels its first frame with the rate that the container states.
        frame_->sample_rate = decoder_->sample_rate;
        return true;
      }
      if (received == ffmpeg::kEndOfStream) {
        return false;
      }
      if (received != ffmpeg::kTryAgain) {
        CountDamage();
        if (packetsEnded_) {
          return false;
        }
      }
      SendPacket();
    }
  }

  /// Hands the next packet of the track to the decoder, or tells it that there are no more.
  void SendPacket() {
    int read = 0;
    do {
      av_packet_unref(packet_.get());
      read = av_read_frame(container_.get(), packet_.get());
    } while (read == 0 && (packet_->stream_index != stream_->index || IsOpusHeader()));
    if (read < 0 && read != ffmpeg::kEndOfStream) {
      readError_ = read;
    }
    packetsEnded_ = read < 0;
    if (!packetsEnded_) {
      // The demuxer marks a packet that it got less of than the container states.
      cutOff_ = (packet_->flags & AV_PKT_FLAG_CORRUPT) != 0;
      damagedPackets_ += std::exchange(damageAtCut_, 0);  // it was not the last one
    }
    const int sent = avcodec_send_packet(decoder_.get(), read < 0 ? nullptr : packet_.get());
    av_packet_unref(packet_.get());
    if (sent < 0 && sent != ffmpeg::kEndOfStream) {
      CountDamage();
    }
  }

  /// Where one stream of Opus is chained to another the demuxer hands on the second one's headers
  /// (RFC 7845, section 5), too.
  bool IsOpusHeader() const {
    const std::string_view bytes(reinterpret_cast<const char*>(packet_->data),
                                 static_cast<std::size_t>(packet_->size));
    return stream_->codecpar->codec_id == AV_CODEC_ID_OPUS &&
           (bytes.starts_with("OpusHead") || bytes.starts_with("OpusTags"));
  }

  /// What cannot be decoded of a packet that is not whole, such as half a sample, is no damage when
  /// the file ends with it.
  void CountDamage() { ++(cutOff_ ? damageAtCut_ : damagedPackets_); }

  bool EndedEarly() const {
    if (!ended_) {
      return false;
    }
    if (container_->duration_estimation_method == AVFMT_DURATION_FROM_BITRATE) {
      // No length is known, and so every last packet may be less than the demuxer asked for.
      return damageAtCut_ > 0 || (cutOff_ && StatesMoreThanItHolds());
    }
    if (cutOff_) {
      return true;
    }
    // Stated lengths are rounded to the container's clock, and may count samples that are left out.
    const std::int64_t slack = StatedFrameCount() / 50 + format_.sampleRate / 5;
    return frameCount_ + slack < StatedFrameCount();
  }

  /// The demuxer keeps to itself what size the header of a WAV states.
  bool StatesMoreThanItHolds() const {
    constexpr std::uint64_t kUnknown = 0x7FFFF000;  // the least that stands for it in a stream
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(path_, error);
    if (error) {
      return false;  // a pipe, which must not be opened again
    }
    unsigned char header[8] = {};
    std::ifstream file(path_, std::ios::binary);
    file.read(reinterpret_cast<char*>(header), sizeof header);
    if (!file || std::memcmp(header, "RIFF", 4) != 0) {
      return false;
    }
    std::uint64_t stated = 0;
    for (const int index : {7, 6, 5, 4}) {
      stated = stated << 8 | header[index];
    }
    return stated < kUnknown && stated + sizeof header > size;
  }

  std::filesystem::path path_;
  std::string name_;
  std::string task_;
  ffmpeg::DemuxerPtr container_;
  AVStream* stream_ = nullptr;
  const AVCodec* codec_ = nullptr;
  ffmpeg::DecoderPtr decoder_;
  ffmpeg::PacketPtr packet_{av_packet_alloc()};
  ffmpeg::FramePtr frame_{av_frame_alloc()};

  AudioFormat format_;
  std::optional<FrameConverter> converter_;
  std::deque<AudioBlock> ready_;
  bool packetsEnded_ = false;
  bool cutOff_ = false;
  bool ended_ = false;
  std::int64_t frameCount_ = 0;
  std::int64_t damagedPackets_ = 0;
  std::int64_t damageAtCut_ = 0;
  std::size_t silencedSamples_ = 0;
  int readError_ = 0;
};

AudioReader::AudioReader(const std::filesystem::path& path, const std::filesystem::path& name)
    : decoder_(std::make_unique<Decoder>(path, name.empty() ? path : name)) {}
AudioReader::~AudioReader() = default;
AudioReader::AudioReader(AudioReader&&) noexcept = default;
AudioReader& AudioReader::operator=(AudioReader&&) noexcept = default;

const AudioFormat& AudioReader::Format() const { return decoder_->Format(); }
std::int64_t AudioReader::StatedFrameCount() const { return decoder_->StatedFrameCount(); }
bool AudioReader::Read(AudioBlock& block) { return decoder_->Read(block); }
std::vector<std::string> AudioReader::Notes() const { return decoder_->Notes(); }

}  // namespace orvelhost
