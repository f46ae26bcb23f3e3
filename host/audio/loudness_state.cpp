#include "host/audio/loudness_state.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <new>

extern "C" {
#include <libavutil/channel_layout.h>
}

namespace orvelhost {
namespace {

// The weights of the channels (ITU-R BS.1770-4, Table 4): speakers of the middle layer from 60 to
// 120 degrees to the side count more, and low frequency effects not at all. Wide ones stand at 60,
// as the front ones do in 22.2 (ITU-R BS.2051, system H); back ones within 120 only where there are
// none at the sides, as in 5.1. The measuring library's own guess goes by the number of channels.
void SetChannels(ebur128_state& state, const AudioFormat& format) {
  constexpr std::uint64_t kEffects = AV_CH_LOW_FREQUENCY | AV_CH_LOW_FREQUENCY_2;
  constexpr std::uint64_t kSides = AV_CH_SIDE_LEFT | AV_CH_SIDE_RIGHT;
  constexpr std::uint64_t kWides = AV_CH_WIDE_LEFT | AV_CH_WIDE_RIGHT;
  constexpr std::uint64_t kFronts = AV_CH_FRONT_LEFT | AV_CH_FRONT_RIGHT;
  constexpr std::uint64_t kBacks =
      AV_CH_BACK_LEFT | AV_CH_BACK_RIGHT | AV_CH_SURROUND_DIRECT_LEFT | AV_CH_SURROUND_DIRECT_RIGHT;
  constexpr unsigned kUsual = 6;  // up to 5.1 the guess is good where nothing else is known
  const auto count = static_cast<unsigned>(format.channelCount);
  if (count < 2 || (format.speakers == 0 && count <= kUsual)) return;
  std::uint64_t speakers = format.speakers;
  const std::uint64_t surrounds = kWides | ((speakers & kSides) != 0 ? kSides : kBacks) |
                                  (speakers == AV_CH_LAYOUT_22POINT2 ? kFronts : 0);
  for (unsigned channel = 0; channel < count; ++channel) {
    const std::uint64_t speaker = speakers & (~speakers + 1);  // the lowest that is left
    speakers &= ~speaker;
    int weight = EBUR128_LEFT;
    if ((speaker & kEffects) != 0) weight = EBUR128_UNUSED;
    if ((speaker & surrounds) != 0) weight = EBUR128_LEFT_SURROUND;
    ebur128_set_channel(&state, channel, weight);
  }
}

}  // namespace

bool LoudnessState::IsMeasurable(const AudioFormat& format) {
  // The weighting's shelf turns at 1681.97 Hz (BS.1770-4, Annex 1, by its coefficients for 48 kHz).
  // Sampled at less than twice that its filter is not stable.
  constexpr int kLeastRate = 3364;  // Hz
  return format.sampleRate >= kLeastRate;
}

LoudnessState::LoudnessState(const AudioFormat& format, int mode)
    : format_(format),
      state_(ebur128_init(static_cast<unsigned>(format.channelCount),
                          static_cast<unsigned long>(format.sampleRate), mode)) {
  if (!state_) {
    throw std::bad_alloc();
  }
  SetChannels(*state_, format);
}

double LoudnessState::Peak(int (*measure)(ebur128_state*, unsigned, double*)) const {
  double greatest = 0.0;
  for (unsigned channel = 0; channel < state_->channels; ++channel) {
    double peak = 0.0;
    measure(state_.get(), channel, &peak);
    greatest = std::max(greatest, peak);
  }
  return 20.0 * std::log10(greatest);
}

void LoudnessState::Add(const AudioBlock& block, std::size_t begin, std::size_t count) {
  assert(block.Format() == format_);
  const std::size_t channels = static_cast<std::size_t>(format_.channelCount);
  interleaved_.resize(count * channels);
  for (int channel = 0; channel < format_.channelCount; ++channel) {
    std::size_t index = static_cast<std::size_t>(channel);
    for (const float sample : block.Channel(channel).subspan(begin, count)) {
      interleaved_[index] = sample;
      index += channels;
    }
  }
  if (ebur128_add_frames_float(state_.get(), interleaved_.data(), count) != EBUR128_SUCCESS) {
    throw std::bad_alloc();  // the one way in which it fails
  }
}

}  // namespace orvelhost
