#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "host/analysis/clip_analysis.h"
#include "host/analysis/loudness_match.h"
#include "host/render/chain_plan.h"

namespace orvelhost {

struct RenderRequest {
  std::filesystem::path input;
  std::filesystem::path output;   ///< .wav or .flac
  bool replaceOutput = false;     ///< whether existing files may be replaced
  std::filesystem::path picture;  ///< .png, of the sound before and after; empty for none
  std::string pictureCaption;     ///< a line that tells what was done; may be empty
  bool isDryRun = false;          ///< measures and plans, and writes nothing
  Look look;
  AnalysisCache* analyses = nullptr;  ///< keeps what is measured of the input file; null: nobody
  /// Of the report's analyses, each of which takes time; none leaves them out. A picture has all,
  /// and so has what is measured first.
  std::optional<AnalysisDetail> detail = AnalysisDetail::kLevels;
  /// Called again and again with the share that is done, 0..1, or -1 when the input does not state
  /// its length; false stops the work. May be empty.
  std::function<bool(double done)> progress;
};

struct RenderReport {
  AudioFormat inputFormat;
  AudioFormat outputFormat;
  std::int64_t frameCount = 0;            ///< of the output
  std::optional<ClipAnalysis> before;     ///< of the input
  std::optional<ClipAnalysis> after;      ///< of the output; none after a dry run
  EffectChain chain;                      ///< what was done
  std::optional<LoudnessMatch> loudness;  ///< before the volume; none when it was to stay
  std::vector<std::string> notes;         ///< what the user should know, a line each
};

/// Why the output and the picture of the request cannot be accepted, in one line; empty when they
/// can.
std::string FindOutputFault(const RenderRequest& request);

/// Says in one line that the request was stopped.
std::string StoppedText(const RenderRequest& request);

/// Runs a call on the main thread and waits for it; passes on what it throws.
using MainThreadCaller = std::function<void(const std::function<void()>& call)>;

/// Reads the input, sends it through the effects that the look gives, and writes the output, block
/// by block; the tail of a reverb follows behind the input's end. Where a section has to know more
/// of the clip, it is measured first. With auto loudness the sound behind all effects but the
/// volume is measured, at its place between left and right, so that these do not move it off its
/// target. An input that is a pipe is copied first.
///
/// All calls of the library go through `onMainThread`, so that renders run side by side. Throws
/// AudioError, with output and picture as they were before and nothing left behind, also for an
/// input that changes meanwhile, and Cancelled. An older picture may be gone when nothing but the
/// output's name could not be given.
RenderReport Render(const Host& host, const RenderRequest& request,
                    const MainThreadCaller& onMainThread);

/// The same on the main thread itself. What was stopped is an AudioError, too.
RenderReport Render(const Host& host, const RenderRequest& request);

}  // namespace orvelhost
