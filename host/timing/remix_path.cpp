#include "host/timing/remix_path.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace orvelhost {
namespace {

constexpr float kNever = std::numeric_limits<float>::infinity();

/// The clip's bar lines on a ruler whose steps are fine enough to tell durations apart, and coarse
/// enough for all states to fit into some 50 MB.
class Ruler {
 public:
  Ruler(const RemixMap& map, std::int64_t frameCount) : begin_(map.barLines.front()) {
    constexpr double kStepsOfBar = 8.0;
    constexpr double kMostStates = 8e6;
    const double lines = static_cast<double>(map.barLines.size());
    const double length = static_cast<double>(std::max(frameCount, map.frameCount));
    const double bar = static_cast<double>(map.barLines.back() - begin_) / (lines - 1);
    step_ = std::max(bar / kStepsOfBar, length * lines / kMostStates);
    for (const std::int64_t line : map.barLines) {
      places_.push_back(static_cast<int>(std::lround(static_cast<double>(line - begin_) / step_)));
    }
  }

  int LineCount() const { return static_cast<int>(places_.size()); }
  int StepsOfClip() const { return places_.back(); }
  int Steps(std::int64_t frames) const {
    return static_cast<int>(std::lround(static_cast<double>(frames) / step_));
  }
  /// From the line that is `bars` before `line`.
  int StepsTo(int line, int bars) const {
    return places_[static_cast<std::size_t>(line)] - places_[static_cast<std::size_t>(line - bars)];
  }

 private:
  std::int64_t begin_;
  double step_;
  std::vector<int> places_;
};

/// The cheapest ways to each bar line by how much was played before it. A way goes on by a bar, or
/// takes a join and then plays `spacing` bars.
class Ways {
 public:
  Ways(const RemixMap& map, const Ruler& ruler, int mostSteps, int spacing, float costOfJoin)
      : map_(map),
        ruler_(ruler),
        spacing_(spacing),
        costs_(Place(mostSteps + 1, 0), kNever),
        taken_(costs_.size(), kWentOn) {
    costs_[0] = 0.0f;
    for (int played = 0; played <= mostSteps; ++played) {
      for (int line = 1; line < ruler.LineCount(); ++line) {
        FindCheapest(played, line, costOfJoin);
      }
    }
  }

  float CostToEnd(int steps) const { return costs_[Place(steps, ruler_.LineCount() - 1)]; }

  std::vector<RemixJoin> JoinsToEnd(int steps) const {
    std::vector<RemixJoin> joins;
    int line = ruler_.LineCount() - 1;
    while (line > 0) {
      const std::int16_t taken = taken_[Place(steps, line)];
      const int bars = taken == kWentOn ? 1 : spacing_;
      steps -= ruler_.StepsTo(line, bars);
      line -= bars;
      if (taken != kWentOn) {
        joins.push_back(JoinsInto(line)[static_cast<std::size_t>(taken)]);
        line = joins.back().exit;
      }
    }
    std::ranges::reverse(joins);
    return joins;
  }

 private:
  static constexpr std::int16_t kWentOn = -1;

  std::size_t Place(int played, int line) const {
    return static_cast<std::size_t>(played) * static_cast<std::size_t>(ruler_.LineCount()) +
           static_cast<std::size_t>(line);
  }
  const std::vector<RemixJoin>& JoinsInto(int line) const {
    return map_.joins[static_cast<std::size_t>(line)];
  }

  void FindCheapest(int played, int line, float costOfJoin) {
    float& cheapest = costs_[Place(played, line)];
    if (const int before = played - ruler_.StepsTo(line, 1); before >= 0) {
      cheapest = costs_[Place(before, line - 1)];
    }
    if (line < spacing_ || ruler_.StepsTo(line, spacing_) > played ||
        ruler_.StepsTo(line, spacing_) == 0) {
      return;
    }
    const int before = played - ruler_.StepsTo(line, spacing_);
    const std::vector<RemixJoin>& joins = JoinsInto(line - spacing_);
    for (std::size_t index = 0; index < joins.size(); ++index) {
      if (joins[index].exit < spacing_) {
        continue;  // the clip's begin counts as a join
      }
      const float cost = costs_[Place(before, joins[index].exit)] + joins[index].cost + costOfJoin;
      if (cost < cheapest) {
        cheapest = cost;
        taken_[Place(played, line)] = static_cast<std::int16_t>(index);
      }
    }
  }

  const RemixMap& map_;
  const Ruler& ruler_;
  int spacing_;
  std::vector<float> costs_;
  std::vector<std::int16_t> taken_;
};

/// How many frames the clip has when it takes the joins.
std::int64_t LengthOfPath(const RemixMap& map, const std::vector<RemixJoin>& joins) {
  std::int64_t length = map.frameCount;
  for (const RemixJoin& join : joins) {
    length += map.barLines[static_cast<std::size_t>(join.exit)] -
              map.barLines[static_cast<std::size_t>(join.entry)];
  }
  return length;
}

}  // namespace

std::vector<RemixJoin> FindRemixPath(const RemixMap& map, std::int64_t frameCount,
                                     bool favorShortSegments) {
  constexpr int kTries = 24;            // durations around the wanted one
  constexpr double kStretchCost = 8.0;  // of twice the length; a join between unlike bars costs 1
  const float costOfJoin = favorShortSegments ? 0.05f : 0.3f;
  const Ruler ruler(map, frameCount);
  const int wanted = std::max(0, ruler.StepsOfClip() + ruler.Steps(frameCount - map.frameCount));
  const int mostSteps = std::max(wanted, ruler.StepsOfClip()) + kTries;
  const Ways ways(map, ruler, mostSteps, LeastBarsBetweenJoins(map, favorShortSegments),
                  costOfJoin);

  std::vector<RemixJoin> best;
  double bestCost = std::numeric_limits<double>::infinity();
  int tries = 0;
  for (int distance = 0; distance <= mostSteps && tries < kTries; ++distance) {
    for (const int steps : {wanted - distance, wanted + distance}) {
      if (steps < 0 || steps > mostSteps || ways.CostToEnd(steps) == kNever) {
        continue;
      }
      ++tries;
      const std::vector<RemixJoin> joins = ways.JoinsToEnd(steps);
      const double ratio = static_cast<double>(LengthOfPath(map, joins)) /
                           static_cast<double>(std::max<std::int64_t>(1, frameCount));
      const double cost =
          static_cast<double>(ways.CostToEnd(steps)) + kStretchCost * std::abs(std::log2(ratio));
      if (cost < bestCost) {
        bestCost = cost;
        best = joins;
      }
    }
  }
  return best;
}

}  // namespace orvelhost
