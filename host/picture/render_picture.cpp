#include "host/picture/render_picture.h"

#include <cmath>

#include "host/picture/panels.h"

namespace orvelhost {
namespace {

constexpr double kWidth = 1600.0;
constexpr double kHeight = 1200.0;
constexpr double kLeft = 116.0;  // of the panels; names of ticks stand before it
constexpr double kRight = 1500.0;

/// A line of marks with their meaning, drawn from the right to the left.
class Legend {
 public:
  Legend(Canvas& canvas, double right, double y) : canvas_(canvas), x_(right), y_(y) {}

  void AddLine(const std::string& text, double width, const Color& color, double dash = 0.0) {
    AddText(text);
    canvas_.Line({{x_ - 34.0, y_}, {x_ - 6.0, y_}}, width, color, dash);
    x_ -= 60.0;
  }
  void AddArea(const std::string& text, const Color& color) {
    AddText(text);
    canvas_.Fill(Box{x_ - 28.0, y_ - 8.0, 22.0, 16.0}, color);
    x_ -= 54.0;
  }

 private:
  void AddText(const std::string& text) {
    x_ -= canvas_.Text(x_, y_, text, {kSmall, kPaleInk, false, Align::kRight});
  }

  Canvas& canvas_;
  double x_;
  double y_;
};

std::string FormatText(const SoundPortrait& portrait) {
  const int channels = portrait.format.channelCount;
  const double kilohertz = portrait.format.sampleRate / 1000.0;
  return NumberText(kilohertz, portrait.format.sampleRate % 1000 == 0 ? 0 : 1) + " kHz, " +
         (channels == 1   ? "mono"
          : channels == 2 ? "stereo"
                          : NumberText(channels, 0) + " channels");
}

std::string LevelText(double level) {
  return NumberText(level, level == std::round(level) ? 0 : 1);
}

/// A sound's panels, one below the other.
void DrawSound(Canvas& canvas, double top, const std::string& name, const PicturedSound& sound,
               const Inks& inks, const Scales& scales,
               const std::optional<LoudnessTarget>& loudness) {
  const double y = top + 14.0;
  const double end = kLeft + canvas.Text(kLeft, y, name, {24.0, inks.line, true});
  canvas.Text(end + 16.0, y + 2.0, FormatText(sound.portrait), {kSmall, kPaleInk});

  Legend legend(canvas, kRight, y);
  if (loudness) {
    legend.AddLine("target " + LevelText(loudness->target) + " LUFS, ceiling " +
                       LevelText(loudness->ceiling) + " dBTP",
                   1.5, kInk, 6.0);
  }
  legend.AddLine("momentary, 0.4 s", 1.5, inks.thin);
  legend.AddLine("short-term, 3 s", 3.0, inks.line);
  legend.AddArea("rms", inks.line);
  legend.AddArea("peaks", inks.fill);
  if (IsClipped(sound.portrait)) {
    legend.AddArea("at full scale", kClipped);
  }
  const Box waves = {kLeft, top + 34.0, kRight - kLeft, 146.0};
  const Box levels = {kLeft, waves.Bottom() + 10.0, kRight - kLeft, 120.0};
  DrawWaves(canvas, waves, scales, sound.portrait, inks, loudness);
  DrawLoudness(canvas, levels, scales, sound, inks, loudness);
}

}  // namespace

void DrawRenderPicture(const RenderPicture& picture, TemporaryFile& file) {
  Canvas canvas(static_cast<int>(kWidth), static_cast<int>(kHeight));
  const double textWidth = kWidth - kLeft - 40.0;
  canvas.Text(kLeft, 40.0, picture.title, {32.0, kInk, true, Align::kLeft, textWidth});
  canvas.Text(kLeft, 76.0, picture.subtitle, {20.0, kPaleInk, false, Align::kLeft, textWidth});

  const Scales scales = FindScales(picture);
  DrawSound(canvas, 108.0, "Before", picture.before, kBeforeInks, scales, picture.loudness);
  DrawSound(canvas, 466.0, "After", picture.after, kAfterInks, scales, picture.loudness);

  const Box spectrum = {kLeft, 866.0, 900.0, 290.0};
  const double end =
      kLeft + canvas.Text(kLeft, spectrum.top - 20.0, "Spectrum", {24.0, kInk, true});
  canvas.Text(end + 16.0, spectrum.top - 18.0, "rms in bands of 1/12 octave, whole duration",
              {kSmall, kPaleInk});
  Legend legend(canvas, spectrum.Right(), spectrum.top - 20.0);
  legend.AddLine("after", 3.5, kAfterInks.line);
  legend.AddLine("before", 2.0, kBeforeInks.line);
  DrawSpectra(canvas, spectrum, scales, picture);
  DrawFigures(canvas, Box{1080.0, spectrum.top - 34.0, kWidth - 40.0 - 1080.0, 0.0}, picture);
  canvas.WritePng(file);
}

}  // namespace orvelhost
