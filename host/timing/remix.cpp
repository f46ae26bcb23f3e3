#include "host/timing/remix.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

#include "host/timing/remix_path.h"
#include "host/timing/seeking_reader.h"
#include "host/timing/stretch.h"

namespace orvelhost {
namespace {

constexpr double kFade = 0.02;         // seconds
constexpr double kAheadOfBar = 0.015;  // seconds; beats are found that exactly
constexpr double kMostShift = 0.025;   // seconds by which a join is moved to align the waves
constexpr double kCompared = 0.04;     // seconds to either side of a join
constexpr double kNearEnough = 0.02;   // seconds off the asked duration that need no stretching

std::int64_t Frames(double seconds, const AudioFormat& format) {
  return std::llround(seconds * format.sampleRate);
}

/// The sum of the channels from `begin` on.
std::vector<float> ReadMix(SeekingReader& reader, std::int64_t begin, std::size_t count) {
  const AudioBlock block = reader.Read(begin, count);
  std::vector<float> mix(count);
  for (int channel = 0; channel < block.ChannelCount(); ++channel) {
    std::ranges::transform(block.Channel(channel), mix, mix.begin(), std::plus<>());
  }
  return mix;
}

double Correlation(std::span<const float> left, std::span<const float> right) {
  double product = 0.0;
  double leftEnergy = 1e-12;
  double rightEnergy = 1e-12;
  for (std::size_t index = 0; index < left.size(); ++index) {
    product += static_cast<double>(left[index]) * static_cast<double>(right[index]);
    leftEnergy += static_cast<double>(left[index]) * static_cast<double>(left[index]);
    rightEnergy += static_cast<double>(right[index]) * static_cast<double>(right[index]);
  }
  return product / std::sqrt(leftEnergy * rightEnergy);
}

/// A join with its frames, the entry moved so that the waves go on as they went.
struct AlignedJoin {
  std::int64_t exit;
  std::int64_t entry;
  double correlation;
};

AlignedJoin Align(const RemixJoin& join, const RemixMap& map,
                  const std::map<int, std::vector<float>>& surroundings) {
  const std::int64_t ahead = Frames(kAheadOfBar, map.format);
  const std::int64_t exit = map.barLines[static_cast<std::size_t>(join.exit)] - ahead;
  const std::int64_t entry = map.barLines[static_cast<std::size_t>(join.entry)] - ahead;
  const std::int64_t reach = Frames(kMostShift, map.format);
  const std::span<const float> left = surroundings.at(join.exit);
  const std::span<const float> right = surroundings.at(join.entry);
  const std::size_t length = left.size() - 2 * static_cast<std::size_t>(reach);
  const std::span<const float> fixed = left.subspan(static_cast<std::size_t>(reach), length);
  AlignedJoin best{exit, entry,
                   Correlation(fixed, right.subspan(static_cast<std::size_t>(reach), length))};
  for (std::int64_t shift = -reach; shift <= reach; ++shift) {
    const double correlation =
        Correlation(fixed, right.subspan(static_cast<std::size_t>(reach + shift), length));
    if (correlation > best.correlation) {
      best = {exit, entry + shift, correlation};
    }
  }
  return best;
}

/// Reads the audio around each bar line that the joins touch, once and in the clip's order.
std::map<int, std::vector<float>> ReadSurroundings(const AudioOpener& clip, const RemixMap& map,
                                                   const std::vector<RemixJoin>& joins,
                                                   const Progress& progress) {
  std::map<int, std::vector<float>> surroundings;
  for (const RemixJoin& join : joins) {
    surroundings[join.exit];
    surroundings[join.entry];
  }
  SeekingReader reader(clip);
  const std::int64_t reach = Frames(kMostShift, map.format) + Frames(kCompared, map.format);
  for (auto& [line, samples] : surroundings) {
    const std::int64_t middle = map.barLines[static_cast<std::size_t>(line)];
    if (progress && !progress(static_cast<double>(middle) / static_cast<double>(map.frameCount))) {
      throw Cancelled();
    }
    samples = ReadMix(reader, middle - Frames(kAheadOfBar, map.format) - reach,
                      static_cast<std::size_t>(2 * reach));
  }
  return surroundings;
}

/// Plays the segments one after the other.
class SegmentSource : public AudioSource {
 public:
  SegmentSource(const AudioOpener& clip, std::vector<RemixSegment> segments)
      : reader_(clip), segments_(std::move(segments)), position_(segments_.front().begin) {
    for (const RemixSegment& segment : segments_) {
      total_ += segment.end - segment.begin;
    }
  }

  const AudioFormat& Format() const override { return reader_.Format(); }
  std::int64_t StatedFrameCount() const override { return total_; }

  bool Read(AudioBlock& block) override {
    constexpr std::int64_t kPiece = 4096;
    const RemixSegment& segment = segments_[index_];
    const bool isLast = index_ + 1 == segments_.size();
    const std::int64_t fade = isLast ? 0 : FadeInto(segments_[index_ + 1], segment);
    const std::int64_t left = segment.end - fade - position_;
    if (left > 0) {
      const std::int64_t count = std::min(kPiece, left);
      block = reader_.Read(position_, static_cast<std::size_t>(count));
      position_ += count;
      return true;
    }
    if (isLast) {
      return false;
    }
    const RemixSegment& next = segments_[++index_];
    position_ = next.begin;
    if (fade == 0) {
      return Read(block);
    }
    const AudioBlock from = reader_.Read(segment.end - fade, static_cast<std::size_t>(fade));
    block = reader_.Read(next.begin - fade, static_cast<std::size_t>(fade));
    Crossfade(from, block, next.correlation);
    return true;
  }

 private:
  /// How many frames ahead of a segment's begin it is faded in.
  std::int64_t FadeInto(const RemixSegment& next, const RemixSegment& segment) const {
    return std::min({Frames(kFade, Format()), next.begin, segment.end - position_});
  }

  /// Fades `from` out and `to` in; `to` takes the result. The sum is as loud as its parts, whatever
  /// they have in common.
  static void Crossfade(const AudioBlock& from, AudioBlock& to, double correlation) {
    const double count = static_cast<double>(to.FrameCount());
    for (int channel = 0; channel < to.ChannelCount(); ++channel) {
      const std::span<float> samples = to.Channel(channel);
      const std::span<const float> before = from.Channel(channel);
      for (std::size_t frame = 0; frame < samples.size(); ++frame) {
        const double in = (static_cast<double>(frame) + 0.5) / count;
        const double out = 1.0 - in;
        const double power = in * in + out * out + 2 * in * out * std::max(0.0, correlation);
        samples[frame] = static_cast<float>(
            (out * static_cast<double>(before[frame]) + in * static_cast<double>(samples[frame])) /
            std::sqrt(power));
      }
    }
  }

  SeekingReader reader_;
  std::vector<RemixSegment> segments_;
  std::size_t index_ = 0;
  std::int64_t position_;
  std::int64_t total_ = 0;
};

std::int64_t LengthOf(const std::vector<RemixSegment>& segments) {
  std::int64_t length = 0;
  for (const RemixSegment& segment : segments) {
    length += segment.end - segment.begin;
  }
  return length;
}

}  // namespace

RemixPlan PlanRemix(const AudioOpener& clip, const RemixMap& map, double duration,
                    bool favorShortSegments, const Progress& progress) {
  const DurationRange range = RemixRange(map);
  const std::int64_t wanted = Frames(std::clamp(duration, range.least, range.greatest), map.format);
  const std::vector<RemixJoin> joins = FindRemixPath(map, wanted, favorShortSegments);
  const std::map<int, std::vector<float>> surroundings =
      ReadSurroundings(clip, map, joins, progress);
  RemixPlan plan;
  plan.segments = {{0, map.frameCount}};
  for (const RemixJoin& join : joins) {
    const AlignedJoin aligned = Align(join, map, surroundings);
    plan.segments.back().end = aligned.exit;
    plan.segments.push_back({aligned.entry, map.frameCount, aligned.correlation});
  }
  const std::int64_t length = LengthOf(plan.segments);
  plan.frameCount = std::abs(length - wanted) <= Frames(kNearEnough, map.format) ? length : wanted;
  return plan;
}

std::unique_ptr<AudioSource> Remix(const AudioOpener& clip, const RemixPlan& plan) {
  return Stretch(std::make_unique<SegmentSource>(clip, plan.segments), LengthOf(plan.segments),
                 plan.frameCount);
}

}  // namespace orvelhost
