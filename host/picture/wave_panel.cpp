#include <algorithm>
#include <cmath>

#include "host/audio/decibels.h"
#include "host/picture/panels.h"

namespace orvelhost {
namespace {

/// The columns that fall on each pixel, in one.
std::vector<WaveColumn> ByPixels(const std::vector<WaveColumn>& columns, const Axis& time,
                                 double secondsPerColumn) {
  std::vector<WaveColumn> pixels(static_cast<std::size_t>(time.end - time.begin) + 1);
  for (std::size_t index = 0; index < columns.size(); ++index) {
    const double middle = (static_cast<double>(index) + 0.5) * secondsPerColumn;
    const double place = time.At(std::min(middle, time.high));
    WaveColumn& pixel = pixels[static_cast<std::size_t>(place - time.begin)];
    if (pixel.count == 0) {
      pixel = columns[index];
    } else {
      pixel.Merge(columns[index]);
    }
  }
  return pixels;
}

void DrawLane(Canvas& canvas, const Box& box, const Axis& time, const Axis& level,
              const std::vector<WaveColumn>& columns, double secondsPerColumn, const Inks& inks) {
  const std::vector<WaveColumn> pixels = ByPixels(columns, time, secondsPerColumn);
  std::vector<Point> peaks;
  std::vector<Point> rms;
  const auto addPoints = [&](std::size_t pixel, bool isUpper) {
    const WaveColumn& column = pixels[pixel];
    if (column.count > 0) {
      const double x = box.left + static_cast<double>(pixel) + 0.5;
      const double mean = std::sqrt(column.square / static_cast<double>(column.count));
      peaks.push_back({x, level.At(isUpper ? column.greatest : column.least)});
      rms.push_back({x, level.At(isUpper ? mean : -mean)});
    }
  };
  for (std::size_t pixel = 0; pixel < pixels.size(); ++pixel) {
    addPoints(pixel, true);
  }
  for (std::size_t pixel = pixels.size(); pixel-- > 0;) {
    addPoints(pixel, false);
  }
  const Canvas::Clip clip(canvas, box);
  canvas.Fill(peaks, inks.fill);
  canvas.Line(peaks, 1.0, inks.fill);  // also where the waveform has no height
  canvas.Fill(rms, inks.line);
  for (std::size_t pixel = 0; pixel < pixels.size(); ++pixel) {
    if (std::max(-pixels[pixel].least, pixels[pixel].greatest) >= kFullScale) {
      const double x = box.left + static_cast<double>(pixel) + 0.5;
      canvas.Line({{x, box.top}, {x, box.top + 6.0}}, 2.0, kClipped);
      canvas.Line({{x, box.Bottom()}, {x, box.Bottom() - 6.0}}, 2.0, kClipped);
    }
  }
}

/// Full scale and its halves, of the upper side as far as the names have room.
std::vector<Tick> AmplitudeTicks(double top, const Axis& level) {
  constexpr double kRoom = 19.0;  // pixels
  std::vector<Tick> ticks;
  const double zero = level.At(0.0);
  for (double decibels = top; ticks.empty() || zero - level.At(Factor(decibels)) >= kRoom;
       decibels -= 6.0) {
    const double amplitude = Factor(decibels);
    if (ticks.empty() || level.At(amplitude) - level.At(ticks.back().value) >= kRoom) {
      ticks.push_back({amplitude, NumberText(decibels, 0)});
    }
  }
  ticks.push_back({0.0, NumberText(-INFINITY, 0)});
  return ticks;
}

}  // namespace

void DrawWaves(Canvas& canvas, const Box& box, const Scales& scales, const SoundPortrait& portrait,
               const Inks& inks, const std::optional<LoudnessTarget>& loudness) {
  const Axis time = TimeAxis(box, scales);
  const double count = static_cast<double>(portrait.lanes.size());
  const double top = Factor(scales.waveTop);
  const double end = time.At(portrait.Duration());
  std::vector<Tick> times = TimeTicks(scales.seconds);
  for (Tick& tick : times) {
    tick.text.clear();  // the panel below has the names
  }
  canvas.Fill(Box{end, box.top, box.Right() - end, box.height}, kNothing);
  for (std::size_t lane = 0; lane < portrait.lanes.size(); ++lane) {
    const Box part = {box.left, box.top + static_cast<double>(lane) * box.height / count, box.width,
                      box.height / count};
    const Axis level = {-top, top, part.Bottom() - 2.0, part.top + 2.0};
    DrawGrid(canvas, part, time, times, level, AmplitudeTicks(scales.waveTop, level), "");
    const double secondsPerColumn =
        static_cast<double>(portrait.framesPerColumn) / portrait.format.sampleRate;
    DrawLane(canvas, part, time, level, portrait.lanes[lane], secondsPerColumn, inks);
    if (loudness && loudness->ceiling <= scales.waveTop) {
      for (const double side : {-1.0, 1.0}) {
        const double y = level.At(side * Factor(loudness->ceiling));
        canvas.Line({{box.left, y}, {box.Right(), y}}, 1.5, kInk, 6.0);
      }
    }
    const char* const name = count < 2.0 ? "" : lane == 0 ? "L" : "R";
    canvas.Text(box.Right() + 10.0, part.top + part.height / 2.0, name, {kSmall, kPaleInk});
  }
  canvas.Text(20.0, box.top + box.height / 2.0, "dBFS", {kSmall, kPaleInk});
}

}  // namespace orvelhost
