#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "host/audio/audio_block.h"
#include "host/audio/level_meter.h"
#include "host/session/host.h"
#include "host/session/setting.h"

namespace orvelhost {

struct RenderRequest {
  std::filesystem::path input;
  std::filesystem::path output;  ///< .wav or .flac
  bool replaceOutput = false;    ///< whether an existing file may be replaced
  std::string mode;  ///< the adjustments mode, or empty: sections without a configuration
  std::optional<orvel::UserPreset> preset;
  std::vector<Setting> settings;  ///< stronger than the preset
  bool measureLevels = true;      ///< else the report is without levels, which takes less time
  /// Called again and again with the share that is done, 0..1, or -1 when the input does not state
  /// its length; false stops the work. May be empty.
  std::function<bool(double done)> progress;
};

struct RenderReport {
  AudioFormat inputFormat;
  AudioFormat outputFormat;
  std::int64_t frameCount = 0;  ///< of the output
  Levels before{};
  Levels after{};
  std::vector<std::string> notes;  ///< what the user should know, a line each
};

/// Why the output of the request cannot be accepted, in one line; empty when it can.
std::string FindOutputFault(const RenderRequest& request);

/// Reads the input, sends it through the effects that the preset and the settings give, and writes
/// the output, block by block; the tail of a reverb follows behind the input's end. Where a section
/// has to know more of the clip, it is measured first. With auto loudness the sound behind all
/// effects but the volume is measured, so that these do not move it off its target. Throws
/// AudioError, with the output as it was before and nothing left behind.
RenderReport Render(const Host& host, const RenderRequest& request);

}  // namespace orvelhost
