#include <cmath>

#include "host/picture/panels.h"

namespace orvelhost {
namespace {

/// One figure before and after; not finite where there is none.
struct Figure {
  std::string name;
  double before;
  double after;
};

std::vector<Figure> FiguresOf(const ClipAnalysis& before, const ClipAnalysis& after) {
  const Hum none{NAN, -INFINITY};
  const Hum hum = before.hum.value_or(none);
  const Hum left = after.hum.value_or(none);
  std::vector<Figure> figures = {
      {"Loudness, LUFS", before.loudness, after.loudness},
      {"Loudness range, LU", before.loudnessRange, after.loudnessRange},
      {"True peak, dBTP", before.truePeak, after.truePeak},
      {"Noise floor, dBFS", before.noiseFloor, after.noiseFloor},
  };
  if (before.hum || after.hum) {
    const double frequency = before.hum ? hum.frequency : left.frequency;
    figures.push_back({"Hum of " + NumberText(frequency, 0) + " Hz, dBFS", hum.level, left.level});
  }
  figures.push_back({"Duration, s", before.Duration(), after.Duration()});
  return figures;
}

}  // namespace

void DrawFigures(Canvas& canvas, const Box& box, const RenderPicture& picture) {
  constexpr double kRow = 42.0;
  const double afterRight = box.Right();
  const double beforeRight = box.Right() - 110.0;
  double y = box.top + kRow / 2.0;
  canvas.Text(beforeRight, y, "before", {19.0, kBeforeInks.line, true, Align::kRight});
  canvas.Text(afterRight, y, "after", {19.0, kAfterInks.line, true, Align::kRight});
  for (const Figure& figure : FiguresOf(picture.before.analysis, picture.after.analysis)) {
    canvas.Line({{box.left, y + kRow / 2.0}, {box.Right(), y + kRow / 2.0}}, 1.0, kGrid);
    y += kRow;
    canvas.Text(box.left, y, figure.name, {19.0, kInk});
    const auto text = [](double value) {
      return std::isfinite(value) ? NumberText(value, 1) : "none";
    };
    canvas.Text(beforeRight, y, text(figure.before), {19.0, kInk, false, Align::kRight});
    canvas.Text(afterRight, y, text(figure.after), {19.0, kInk, true, Align::kRight});
  }
}

}  // namespace orvelhost
