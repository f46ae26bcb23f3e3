#include "tests/host/support/audio.h"

#include <algorithm>
#include <complex>
#include <fstream>
#include <iterator>
#include <limits>
#include <random>

#include <gtest/gtest.h>
#include <unistd.h>

#include "host/audio/audio_writer.h"

namespace orvelhost::testing {
namespace {

double InDb(double amplitude) { return 20.0 * std::log10(amplitude); }

/// Joins blocks of one format.
class Joiner {
 public:
  explicit Joiner(const AudioFormat& format)
      : format_(format), rows_(static_cast<std::size_t>(format.channelCount)) {}

  void Add(const AudioBlock& block) {
    for (int channel = 0; channel < format_.channelCount; ++channel) {
      std::ranges::copy(block.Channel(channel),
                        std::back_inserter(rows_[static_cast<std::size_t>(channel)]));
    }
  }

  AudioBlock Join() const {
    AudioBlock joined(format_, rows_.front().size());
    for (int channel = 0; channel < format_.channelCount; ++channel) {
      std::ranges::copy(rows_[static_cast<std::size_t>(channel)], joined.Channel(channel).begin());
    }
    return joined;
  }

 private:
  AudioFormat format_;
  std::vector<std::vector<float>> rows_;
};

AudioBlock Slice(const AudioBlock& block, std::size_t begin, std::size_t count) {
  AudioBlock slice(block.Format(), count);
  for (int channel = 0; channel < block.ChannelCount(); ++channel) {
    std::ranges::copy(block.Channel(channel).subspan(begin, count), slice.Channel(channel).begin());
  }
  return slice;
}

}  // namespace

TemporaryFolder::TemporaryFolder() {
  std::string name = ::testing::TempDir() + "/orvel-host-XXXXXX";
  path_ = mkdtemp(name.data());
}

TemporaryFolder::~TemporaryFolder() { std::filesystem::remove_all(path_); }

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

Signal Sine(double amplitude, double frequency) {
  return [=](double time, int channel) {
    return amplitude * std::sin(2 * std::numbers::pi * (frequency * time - channel / 8.0));
  };
}

Signal Noise(double amplitude) {
  return [amplitude, random = std::mt19937(1)](double, int) mutable {
    return std::uniform_real_distribution<double>(-amplitude, amplitude)(random);
  };
}

AudioBlock RunFilters(const AudioBlock& block, const std::vector<FilterSpec>& filters,
                      std::size_t pieceSize) {
  FilterGraph graph(block.Format(), filters);
  Joiner joiner(graph.OutputFormat());
  AudioBlock out;
  for (std::size_t begin = 0; begin < block.FrameCount(); begin += pieceSize) {
    graph.Push(Slice(block, begin, std::min(pieceSize, block.FrameCount() - begin)));
    while (graph.Pull(out)) {
      joiner.Add(out);
    }
  }
  graph.Finish();
  while (graph.Pull(out)) {
    joiner.Add(out);
  }
  return joiner.Join();
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
  Joiner joiner(source.Format());
  AudioBlock block;
  while (source.Read(block)) {
    joiner.Add(block);
  }
  return joiner.Join();
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
  return Slice(block, frame(begin), frame(end) - frame(begin));
}

AudioBlock Head(const AudioBlock& block, std::size_t frameCount) {
  return Slice(block, 0, frameCount);
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
