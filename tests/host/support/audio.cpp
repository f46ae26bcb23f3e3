#include "tests/host/support/audio.h"

#include <algorithm>
#include <complex>
#include <fstream>
#include <iterator>
#include <limits>
#include <utility>

#include <gtest/gtest.h>
#include <unistd.h>

#include "host/analysis/filtered_source.h"
#include "host/audio/audio_writer.h"

namespace orvelhost::testing {
namespace {

double InDb(double amplitude) { return 20.0 * std::log10(amplitude); }

/// A block in pieces of `size` frames.
class PieceSource : public AudioSource {
 public:
  PieceSource(const AudioBlock& block, std::size_t size) : block_(block), size_(size) {}
  const AudioFormat& Format() const override { return block_.Format(); }
  std::int64_t StatedFrameCount() const override { return 0; }
  bool Read(AudioBlock& piece) override {
    const std::size_t count = std::min(size_, block_.FrameCount() - done_);
    if (count > 0) piece = block_.Part(done_, count);
    done_ += count;
    return count > 0;
  }

 private:
  AudioBlock block_;
  std::size_t size_;
  std::size_t done_ = 0;
};

}  // namespace

TemporaryFolder::TemporaryFolder() {
  std::string name = ::testing::TempDir() + "/orvel-host-XXXXXX";
  path_ = mkdtemp(name.data());
}

std::vector<std::string> TemporaryFolder::FileNames() const {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(path_)) {
    names.push_back(entry.path().filename().string());
  }
  std::ranges::sort(names);
  return names;
}

AudioBlock Make(int sampleRate, int channelCount, double seconds, const Signal& signal) {
  constexpr std::uint64_t kFrontCentre = 4;
  constexpr std::uint64_t kFrontPair = 3;
  const std::uint64_t speakers = channelCount == 1   ? kFrontCentre
                                 : channelCount == 2 ? kFrontPair
                                                     : 0;
  AudioBlock block({sampleRate, channelCount, speakers},
                   static_cast<std::size_t>(std::lround(seconds * sampleRate)));
  for (int channel = 0; channel < channelCount; ++channel) {
    std::size_t frame = 0;
    for (float& sample : block.Channel(channel)) {
      sample = static_cast<float>(signal(static_cast<double>(frame++) / sampleRate, channel));
    }
  }
  return block;
}

AudioBlock RunFilters(const AudioBlock& block, const std::vector<FilterSpec>& filters,
                      std::size_t pieceSize) {
  PieceSource pieces(block, pieceSize);
  FilteredSource filtered(pieces, filters);
  return ReadAll(filtered);
}

AudioBlock Join(const AudioFormat& format, const std::vector<AudioBlock>& pieces) {
  std::size_t done = 0;
  for (const AudioBlock& piece : pieces) done += piece.FrameCount();
  AudioBlock joined(format, std::exchange(done, 0));
  for (const AudioBlock& piece : pieces) {
    for (int channel = 0; channel < format.channelCount; ++channel) {
      std::ranges::copy(piece.Channel(channel), joined.Channel(channel).subspan(done).begin());
    }
    done += piece.FrameCount();
  }
  return joined;
}

void WriteFile(const std::filesystem::path& path, const AudioBlock& block) {
  AudioWriter writer(path, block.Format());
  writer.Write(block);
  writer.Commit();
}

AudioBlock ReadFile(const std::filesystem::path& path) {
  FileSource file(path);
  return ReadAll(file);
}

AudioBlock ReadAll(AudioSource& source) {
  std::vector<AudioBlock> pieces;
  for (AudioBlock block; source.Read(block);) pieces.push_back(block);
  return Join(source.Format(), pieces);
}

std::string ReadBytes(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void WriteBytes(const std::filesystem::path& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

double Peak(const AudioBlock& block) {
  double peak = 0.0;
  for (int channel = 0; channel < block.ChannelCount(); ++channel) {
    for (const float sample : block.Channel(channel)) {
      peak = std::max(peak, static_cast<double>(std::abs(sample)));
    }
  }
  return peak;
}

bool IsSilent(std::span<const float> samples) {
  return std::ranges::all_of(samples, [](float sample) { return sample == 0.0f; });
}

double RmsInDb(const AudioBlock& block) {
  double energy = 0.0;
  for (int channel = 0; channel < block.ChannelCount(); ++channel) {
    for (const float sample : block.Channel(channel)) {
      energy += static_cast<double>(sample) * sample;
    }
  }
  const auto count = static_cast<double>(block.FrameCount()) * block.ChannelCount();
  return InDb(std::sqrt(energy / count));
}

double ToneInDb(const AudioBlock& block, double frequency, double begin, double end, int channel) {
  const AudioBlock part = Between(block, begin, end);
  std::complex<double> sum = 0.0;
  double weights = 0.0;
  for (std::size_t frame = 0; frame < part.FrameCount(); ++frame) {
    const double at = static_cast<double>(frame);
    const double weight =
        1.0 - std::cos(2.0 * std::numbers::pi * at / static_cast<double>(part.FrameCount()));
    sum += weight * static_cast<double>(part.Channel(channel)[frame]) *
           std::polar(1.0, -2.0 * std::numbers::pi * frequency * at / part.Format().sampleRate);
    weights += weight;
  }
  return InDb(2.0 * std::abs(sum) / weights);
}

AudioBlock Between(const AudioBlock& block, double begin, double end) {
  const auto frame = [&](double time) {
    return static_cast<std::size_t>(std::lround(time * block.Format().sampleRate));
  };
  return block.Part(frame(begin), frame(end) - frame(begin));
}

AudioBlock Difference(const AudioBlock& left, const AudioBlock& right) {
  AudioBlock difference = left;
  for (int channel = 0; channel < left.ChannelCount(); ++channel) {
    std::ranges::transform(left.Channel(channel), right.Channel(channel),
                           difference.Channel(channel).begin(), std::minus<>());
  }
  return difference;
}

double DifferenceInDb(const AudioBlock& left, const AudioBlock& right) {
  if (left.ChannelCount() != right.ChannelCount() || left.FrameCount() != right.FrameCount()) {
    return std::numeric_limits<double>::infinity();
  }
  return InDb(Peak(Difference(left, right)));
}

bool HaveSameSamples(const AudioBlock& left, const AudioBlock& right) {
  return DifferenceInDb(left, right) == -std::numeric_limits<double>::infinity();
}

}  // namespace orvelhost::testing
