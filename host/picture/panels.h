#pragma once

#include "host/picture/axis.h"
#include "host/picture/canvas.h"
#include "host/picture/render_picture.h"

namespace orvelhost {

/// The colours of one sound, from dark to light. Orange and blue stay apart for every kind of
/// colour blindness.
struct Inks {
  Color line;
  Color thin;
  Color fill;
};

inline constexpr Inks kBeforeInks = {{0.74, 0.34, 0.0}, {0.90, 0.55, 0.20}, {0.97, 0.78, 0.56}};
inline constexpr Inks kAfterInks = {{0.0, 0.31, 0.56}, {0.25, 0.56, 0.82}, {0.60, 0.79, 0.93}};
inline constexpr Color kInk = {0.13, 0.13, 0.13};
inline constexpr Color kPaleInk = {0.40, 0.40, 0.40};
inline constexpr Color kGrid = {0.87, 0.87, 0.87};
inline constexpr Color kNothing = {0.95, 0.95, 0.95};  ///< where a panel has no sound
inline constexpr Color kClipped = {0.75, 0.0, 0.45};

inline constexpr double kSmall = 17.0;  ///< the size of text beside axes, in pixels

/// Files that hold integers cut off here, give or take their last step.
inline constexpr double kFullScale = 0.9999;

/// What the panels of both sounds have in common.
struct Scales {
  double seconds;       ///< the longer sound's duration
  double waveTop;       ///< dBFS
  double loudnessLow;   ///< LUFS
  double loudnessHigh;  ///< LUFS
  double spectrumLow;   ///< dBFS
  double spectrumHigh;  ///< dBFS
};

Scales FindScales(const RenderPicture& picture);

/// The axis of time over a panel's width.
Axis TimeAxis(const Box& box, const Scales& scales);

/// A frame, its grid and the names of its ticks: those of `x` below it, those of `y` left of it.
void DrawGrid(Canvas& canvas, const Box& box, const Axis& x, const std::vector<Tick>& xTicks,
              const Axis& y, const std::vector<Tick>& yTicks, const std::string& yUnit);

void DrawWaves(Canvas& canvas, const Box& box, const Scales& scales, const SoundPortrait& portrait,
               const Inks& inks, const std::optional<LoudnessTarget>& loudness);
void DrawLoudness(Canvas& canvas, const Box& box, const Scales& scales, const PicturedSound& sound,
                  const Inks& inks, const std::optional<LoudnessTarget>& loudness);
void DrawSpectra(Canvas& canvas, const Box& box, const Scales& scales,
                 const RenderPicture& picture);
void DrawFigures(Canvas& canvas, const Box& box, const RenderPicture& picture);

/// Tells whether a sample reaches full scale.
bool IsClipped(const SoundPortrait& portrait);

}  // namespace orvelhost
