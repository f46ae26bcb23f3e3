#include "host/analysis/mono_resampler.h"

#include <array>
#include <cstdint>

namespace orvelhost {
namespace {

constexpr char kTask[] = "cannot change the sample rate";

}  // namespace

MonoResampler::MonoResampler(int fromRate, int toRate) {
  ffmpeg::ChannelLayout mono(AudioFormat{fromRate, 1, 0});
  SwrContext* made = nullptr;
  ffmpeg::Check(swr_alloc_set_opts2(&made, mono.GetMutable(), AV_SAMPLE_FMT_DBL, toRate,
                                    mono.GetMutable(), AV_SAMPLE_FMT_FLT, fromRate, 0, nullptr),
                kTask);
  resampler_.reset(made);
  ffmpeg::Check(swr_init(made), kTask);
}

void MonoResampler::Add(std::span<const float> samples, std::vector<double>& out) {
  const int count = static_cast<int>(samples.size());
  const int room = ffmpeg::Check(swr_get_out_samples(resampler_.get(), count), kTask);
  const std::size_t before = out.size();
  out.resize(before + static_cast<std::size_t>(room));
  std::array in = {reinterpret_cast<const std::uint8_t*>(samples.data())};
  std::array to = {reinterpret_cast<std::uint8_t*>(out.data() + before)};
  const int made =
      ffmpeg::Check(swr_convert(resampler_.get(), to.data(), room, in.data(), count), kTask);
  out.resize(before + static_cast<std::size_t>(made));
}

}  // namespace orvelhost
