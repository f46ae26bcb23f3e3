#include "host/picture/panels.h"

namespace orvelhost {
namespace {

std::vector<Point> Outline(const std::vector<SpectrumBand>& bands, const Axis& frequency,
                           const Axis& level) {
  std::vector<Point> points;
  points.reserve(bands.size());
  for (const SpectrumBand& band : bands) {
    points.push_back({frequency.At(band.frequency), level.At(band.level)});
  }
  return points;
}

/// The curve and what lies below it.
std::vector<Point> Closed(std::vector<Point> points, double bottom) {
  if (!points.empty()) {
    points.push_back({points.back().x, bottom});
    points.push_back({points.front().x, bottom});
  }
  return points;
}

}  // namespace

void DrawSpectra(Canvas& canvas, const Box& box, const Scales& scales,
                 const RenderPicture& picture) {
  const Axis frequency = {20.0, 20000.0, box.left, box.Right(), true};
  const Axis level = {scales.spectrumLow, scales.spectrumHigh, box.Bottom(), box.top};
  DrawGrid(canvas, box, frequency, FrequencyTicks(), level,
           LevelTicks(scales.spectrumLow, scales.spectrumHigh, 20.0), "dBFS");
  canvas.Text(box.Right() + 26.0, box.Bottom() + 15.0, "Hz", {kSmall, kPaleInk});
  const auto before = Outline(picture.before.portrait.spectrum, frequency, level);
  const auto after = Outline(picture.after.portrait.spectrum, frequency, level);
  const Canvas::Clip clip(canvas, box);
  canvas.Fill(Closed(before, box.Bottom()), kBeforeInks.fill);
  canvas.Fill(Closed(after, box.Bottom()), kAfterInks.fill.WithOpacity(0.6));
  canvas.Line(before, 2.0, kBeforeInks.line);
  canvas.Line(after, 3.5, kAfterInks.line);
}

}  // namespace orvelhost
