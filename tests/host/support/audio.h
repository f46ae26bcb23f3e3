#pragma once

#include <cmath>
#include <cstddef>
#include <filesystem>
#include <numbers>
#include <span>
#include <vector>

#include "host/analysis/audio_source.h"
#include "host/audio/filter_graph.h"
#include "tests/host/support/signals.h"

namespace orvelhost::testing {

/// A folder of its own for one test, removed with everything in it.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder() { std::filesystem::remove_all(path_); }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  std::filesystem::path operator/(const std::string& name) const { return path_ / name; }
  std::vector<std::string> FileNames() const;

 private:
  std::filesystem::path path_;
};

/// `signal` in every channel.
AudioBlock Make(int sampleRate, int channelCount, double seconds, const Signal& signal);

/// All that comes out of the filters when `block` is pushed in pieces of `pieceSize` frames.
AudioBlock RunFilters(const AudioBlock& block, const std::vector<FilterSpec>& filters,
                      std::size_t pieceSize = 512);

/// The pieces, all of one format, behind each other.
AudioBlock Join(const AudioFormat& format, const std::vector<AudioBlock>& pieces);

void WriteFile(const std::filesystem::path& path, const AudioBlock& block);
AudioBlock ReadFile(const std::filesystem::path& path);

/// All that is left of the source.
AudioBlock ReadAll(AudioSource& source);

std::string ReadBytes(const std::filesystem::path& path);
void WriteBytes(const std::filesystem::path& path, const std::string& bytes);

double Peak(const AudioBlock& block);
bool IsSilent(std::span<const float> samples);
/// The root mean square over all channels, in dB against full scale.
double RmsInDb(const AudioBlock& block);
/// The amplitude in dBFS of the tone of this frequency in a channel between two times in seconds,
/// which has to last ten of its turns.
double ToneInDb(const AudioBlock& block, double frequency, double begin, double end,
                int channel = 0);
/// The frames between two times in seconds.
AudioBlock Between(const AudioBlock& block, double begin, double end);
/// The samples of `left` less those of `right`, which has the same shape.
AudioBlock Difference(const AudioBlock& left, const AudioBlock& right);
/// The largest difference of two samples at the same place, in dBFS; +inf for unequal shapes.
double DifferenceInDb(const AudioBlock& left, const AudioBlock& right);

bool HaveSameSamples(const AudioBlock& left, const AudioBlock& right);

}  // namespace orvelhost::testing
