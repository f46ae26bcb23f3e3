#include "host/picture/panels.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace orvelhost {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// The least and the greatest of the finite levels that were added.
struct LevelRange {
  double least = kInfinity;
  double greatest = -kInfinity;

  void Add(double level) {
    if (std::isfinite(level)) {
      least = std::min(least, level);
      greatest = std::max(greatest, level);
    }
  }

  /// Widened to multiples of ten, between `narrowest` and `widest` apart, or as given when empty.
  void Round(double narrowest, double widest, const LevelRange& whenEmpty) {
    if (greatest < least) {
      *this = whenEmpty;
      return;
    }
    greatest = std::ceil((greatest + 1.0) / 10.0) * 10.0;
    least = std::clamp(std::floor(least / 10.0) * 10.0, greatest - widest, greatest - narrowest);
  }
};

double PeakOf(const SoundPortrait& portrait) {
  float peak = 0.0F;
  for (const std::vector<WaveColumn>& lane : portrait.lanes) {
    for (const WaveColumn& column : lane) {
      peak = std::max({peak, -column.least, column.greatest});
    }
  }
  return peak;
}

}  // namespace

bool IsClipped(const SoundPortrait& portrait) { return PeakOf(portrait) >= kFullScale; }

Scales FindScales(const RenderPicture& picture) {
  LevelRange loudness;
  LevelRange spectrum;
  double seconds = 0.0;
  double peak = 0.0;
  for (const PicturedSound* sound : {&picture.before, &picture.after}) {
    for (const LoudnessPoint& point : sound->portrait.loudness) {
      loudness.Add(point.leastMomentary);
      loudness.Add(point.greatestMomentary);
    }
    loudness.Add(sound->analysis.loudness);
    for (const SpectrumBand& band : sound->portrait.spectrum) {
      spectrum.Add(band.level);
    }
    seconds = std::max(seconds, sound->portrait.Duration());
    peak = std::max(peak, PeakOf(sound->portrait));
  }
  if (picture.loudness) {
    loudness.Add(picture.loudness->target);
  }
  loudness.Round(30.0, 60.0, {-70.0, -10.0});
  spectrum.Round(40.0, 100.0, {-100.0, 0.0});
  // Quiet sound is shown larger, in steps of half the amplitude; what is louder than full scale is
  // shown up to four times that.
  constexpr double kStep = 6.0;
  constexpr double kTolerance = 0.01;
  const double top = std::ceil((20.0 * std::log10(peak) - kTolerance) / kStep) * kStep;
  return {.seconds = seconds > 0.0 ? seconds : 1.0,
          .waveTop = peak > 0.0 ? std::clamp(top, -60.0, 12.0) : 0.0,
          .loudnessLow = loudness.least,
          .loudnessHigh = loudness.greatest,
          .spectrumLow = spectrum.least,
          .spectrumHigh = spectrum.greatest};
}

Axis TimeAxis(const Box& box, const Scales& scales) {
  return {0.0, scales.seconds, box.left, box.Right()};
}

void DrawGrid(Canvas& canvas, const Box& box, const Axis& x, const std::vector<Tick>& xTicks,
              const Axis& y, const std::vector<Tick>& yTicks, const std::string& yUnit) {
  for (const Tick& tick : xTicks) {
    const double place = x.At(tick.value);
    canvas.Line({{place, box.top}, {place, box.Bottom()}}, 1.0, kGrid);
    canvas.Text(place, box.Bottom() + 15.0, tick.text, {kSmall, kPaleInk, false, Align::kCenter});
  }
  for (const Tick& tick : yTicks) {
    const double place = y.At(tick.value);
    canvas.Line({{box.left, place}, {box.Right(), place}}, 1.0, kGrid);
    canvas.Text(box.left - 10.0, place, tick.text, {kSmall, kPaleInk, false, Align::kRight});
  }
  canvas.Line({{box.left, box.top},
               {box.Right(), box.top},
               {box.Right(), box.Bottom()},
               {box.left, box.Bottom()},
               {box.left, box.top}},
              1.0, kPaleInk);
  canvas.Text(20.0, box.top + box.height / 2.0, yUnit, {kSmall, kPaleInk});
}

}  // namespace orvelhost
