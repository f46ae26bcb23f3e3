#include <cmath>

#include "host/analysis/analysis_report.h"
#include "host/picture/panels.h"

namespace orvelhost {

void DrawFigures(Canvas& canvas, const Box& box, const RenderPicture& picture) {
  constexpr double kRow = 42.0;
  const double afterRight = box.Right();
  const double beforeRight = box.Right() - 110.0;
  double y = box.top + kRow / 2.0;
  canvas.Text(beforeRight, y, "before", {19.0, kBeforeInks.line, true, Align::kRight});
  canvas.Text(afterRight, y, "after", {19.0, kAfterInks.line, true, Align::kRight});
  const auto before = FiguresOf(picture.before.analysis);
  const auto after = FiguresOf(picture.after.analysis);
  const auto& hum = (picture.before.analysis.hum ? picture.before : picture.after).analysis.hum;
  for (const FigureIndex index : {kFigure_Loudness, kFigure_LoudnessRange, kFigure_TruePeak,
                                  kFigure_NoiseFloor, kFigure_HumLevel, kFigure_Duration}) {
    const bool isHum = index == kFigure_HumLevel;
    if (isHum && !hum) continue;
    canvas.Line({{box.left, y + kRow / 2.0}, {box.Right(), y + kRow / 2.0}}, 1.0, kGrid);
    y += kRow;
    canvas.Text(
        box.left, y,
        isHum ? "Hum of " + NumberText(hum->frequency, 0) + " Hz, dBFS" : before[index].Label(),
        {19.0, kInk});
    const auto text = [](const Figure& figure) {
      return std::isfinite(figure.value) ? NumberText(figure.value, 1) : "none";
    };
    canvas.Text(beforeRight, y, text(before[index]), {19.0, kInk, false, Align::kRight});
    canvas.Text(afterRight, y, text(after[index]), {19.0, kInk, true, Align::kRight});
  }
}

}  // namespace orvelhost
