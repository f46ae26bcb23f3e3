#pragma once

#include <optional>
#include <string>

#include "host/analysis/clip_analysis.h"
#include "host/analysis/loudness_match.h"
#include "host/audio/temporary_file.h"
#include "host/picture/sound_portrait.h"

namespace orvelhost {

/// What a picture shows of a sound.
struct PicturedSound {
  SoundPortrait portrait;
  ClipAnalysis analysis;  ///< of the same sound; the figures come from here
};

/// A sound before and after a render.
struct RenderPicture {
  std::string title;     ///< a line, such as the file's name
  std::string subtitle;  ///< a line, such as what was done; may be empty
  PicturedSound before;
  PicturedSound after;
  std::optional<LoudnessTarget> loudness;  ///< what was asked for, if anything
};

/// Draws waveforms and loudness over time, before above after on the same scales, both spectra in
/// one panel, and the figures, as a PNG file of 1600 by 1200 pixels; the same input gives the same
/// bytes. Throws AudioError when the file cannot be written. The caller commits it.
void DrawRenderPicture(const RenderPicture& picture, TemporaryFile& file);

}  // namespace orvelhost
