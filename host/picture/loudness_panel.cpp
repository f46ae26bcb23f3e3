#include <algorithm>
#include <cmath>

#include "host/picture/panels.h"

namespace orvelhost {
void DrawLoudness(Canvas& canvas, const Box& box, const Scales& scales, const PicturedSound& sound,
                  const Inks& inks, const std::optional<LoudnessTarget>& loudness) {
  const Axis time = TimeAxis(box, scales);
  const Axis level = {scales.loudnessLow, scales.loudnessHigh, box.Bottom(), box.top};
  const double end = time.At(sound.portrait.Duration());
  canvas.Fill(Box{end, box.top, box.Right() - end, box.height}, kNothing);
  const double step = scales.loudnessHigh - scales.loudnessLow > 30.0 ? 20.0 : 10.0;
  DrawGrid(canvas, box, time, TimeTicks(scales.seconds), level,
           LevelTicks(scales.loudnessLow, scales.loudnessHigh, step), "LUFS");
  canvas.Text(box.Right() + 34.0, box.Bottom() + 15.0, TimeUnit(scales.seconds),
              {kSmall, kPaleInk});

  std::vector<Point> momentary;
  std::vector<Point> shortTerm;
  const std::vector<LoudnessPoint>& points = sound.portrait.loudness;
  for (std::size_t index = 0; index < points.size(); ++index) {
    const double seconds = (static_cast<double>(index) + 1.0) * sound.portrait.secondsPerPoint;
    const double x = std::min(time.At(seconds), end);
    momentary.push_back({x, level.At(points[index].greatestMomentary)});
    shortTerm.push_back({x, level.At(points[index].greatestShortTerm)});
  }
  std::vector<Point> area = momentary;
  for (std::size_t index = points.size(); index-- > 0;) {
    area.push_back({momentary[index].x, level.At(points[index].leastMomentary)});
  }
  {
    const Canvas::Clip clip(canvas, box);
    canvas.Fill(area, inks.fill);
    canvas.Line(momentary, 1.5, inks.thin);
    canvas.Line(shortTerm, 3.0, inks.line);
    if (loudness) {
      const double y = level.At(loudness->target);
      canvas.Line({{box.left, y}, {box.Right(), y}}, 1.5, kInk, 6.0);
    }
  }
  const bool isSilent = std::ranges::all_of(
      points, [](const LoudnessPoint& point) { return std::isinf(point.greatestMomentary); });
  if (isSilent) {
    canvas.Text(box.left + box.width / 2.0, box.top + box.height / 2.0,
                points.empty() ? "no loudness can be measured" : "silence",
                {kSmall, kPaleInk, false, Align::kCenter});
  }
  if (const double integrated = sound.analysis.loudness;
      integrated >= level.low && integrated <= level.high) {
    const double y = level.At(integrated);
    canvas.Fill(
        std::vector<Point>{
            {box.Right() + 2.0, y}, {box.Right() + 12.0, y - 6.0}, {box.Right() + 12.0, y + 6.0}},
        inks.line);
    canvas.Text(box.Right() + 16.0, y, NumberText(integrated, 1), {kSmall, inks.line, true});
  }
}

}  // namespace orvelhost
