#include "host/render/renderer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <system_error>

#include "host/analysis/audio_source.h"
#include "host/analysis/filtered_source.h"
#include "host/analysis/loudness_match.h"
#include "host/analysis/progress.h"
#include "host/audio/audio_error.h"
#include "host/audio/audio_writer.h"
#include "host/audio/decibels.h"
#include "host/audio/filter_graph.h"
#include "host/audio/gated_loudness.h"
#include "host/audio/temporary_file.h"
#include "host/effects/effect_catalogue.h"
#include "host/picture/portrait_collector.h"
#include "host/picture/render_picture.h"
#include "host/render/file_clash.h"
#include "host/render/input_file.h"
#include "host/session/effect_chain.h"
#include "host/timing/remix.h"
#include "host/timing/stretch.h"

namespace orvelhost {
namespace {

std::string Rounded(double value) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.1f", value);
  return text.data();
}

/// The de-hummer has the wrong mains to look at; empty when it has not.
std::string HumNote(const EffectChain& chain, const EffectContext& context) {
  using namespace dehummer;
  for (const EffectSlot& slot : chain.Slots()) {
    if (slot.enabled && slot.componentId == orvel::kIzotopeDeHummerID && context.humFrequency) {
      const double base = ToEffectScale(FindEffect(slot.componentId)->parameters[kBaseFrequency],
                                        slot.parameters[kBaseFrequency]);
      if (std::abs(*context.humFrequency - base) > 5.0) {
        return "the hum lies at " + Rounded(*context.humFrequency) +
               " Hz, and is not taken away at " + Rounded(base) + "; set restoration.HumFrequency";
      }
    }
  }
  return "";
}

/// Noise is to be taken away and none was found; empty when that is not so.
std::string NoiseNote(const EffectChain& chain, const EffectContext& context) {
  using namespace noisereduction;
  const bool isAsked = std::ranges::any_of(chain.Slots(), [](const EffectSlot& slot) {
    return slot.enabled && slot.componentId == teskaudiofilters::kAdaptiveNoiseReductionID &&
           slot.parameters[kReduction] > 0.0f;
  });
  return !isAsked || context.noise ? "" : "no steady noise was found, and none is taken away";
}

/// How the parts of the work share the progress that is told.
class Steps {
 public:
  /// `weights` of the steps, in their order.
  Steps(const RenderRequest& request, const std::vector<double>& weights) : request_(request) {
    double sum = 0.0;
    for (const double weight : weights) {
      ends_.push_back(sum += weight);
    }
    for (double& end : ends_) {
      end /= sum;
    }
  }

  /// Of the next step.
  Progress Next() {
    const double begin = next_ == 0 ? 0.0 : ends_[next_ - 1];
    return StepOf(request_.progress, begin, ends_[next_++]);
  }

 private:
  const RenderRequest& request_;
  std::vector<double> ends_;
  std::size_t next_ = 0;
};

/// Measures the sound behind the shaping effects and at its place between left and right.
GatedLoudness MeasureShaped(const EffectChain& chain, const EffectContext& context,
                            AudioSource& source, const Progress& progress) {
  std::vector<FilterSpec> filters = ShapingFilters(chain, context);
  std::ranges::move(PanFilters(chain.Pan(), context.format.channelCount),
                    std::back_inserter(filters));
  FilteredSource shaped(source, filters);
  ProgressingReader reader(shaped, progress);
  GatedLoudness loudness(shaped.Format());
  for (AudioBlock block; reader.Read(block);) loudness.Add(block);
  return loudness;
}

/// Measures the sound behind the shaping effects and sets the gain that it needs. What gain is
/// needed depends on what lies above the meter's gate, and that on the gain: a louder clip has more
/// above it, which makes the mean lower, so that the search goes one way and ends; with a target
/// near the gate, where nothing is above it any more.
LoudnessMatch FitLoudness(EffectChain& chain, const EffectContext& context,
                          const AudioOpener& opener, const Progress& progress) {
  constexpr double kSame = 1e-6;  // dB
  const LoudnessTarget target = *chain.Loudness();
  const GatedLoudness loudness = MeasureShaped(chain, context, *opener(), progress);
  const double truePeak = loudness.TruePeak();
  const auto matchBehind = [&](double gain) {
    return MatchLoudness(loudness.With(gain) - gain, truePeak, target);
  };
  double gain = 0.0;
  LoudnessMatch match = matchBehind(gain);
  if (match.status == kAnalysis_NotMeasurable && std::isfinite(truePeak)) {
    gain = target.ceiling - truePeak;  // all lies below the gate; no gain can bring more above it
    match = matchBehind(gain);
  }
  while (match.status != kAnalysis_NotMeasurable && std::abs(match.gain - gain) > kSame) {
    gain = match.gain;
    match = matchBehind(gain);
  }
  chain.SetLoudness(target, match.gain);
  return match;
}

/// Why the loudness is not what was asked for; empty when it is.
std::string LoudnessNote(const LoudnessMatch& match, double target) {
  if (match.status == kAnalysis_CeilingLimits) {
    return "the peaks keep the loudness at " + Rounded(match.reached) +
           " LUFS, below its target of " + Rounded(target);
  }
  return match.status == kAnalysis_NotMeasurable ? "the loudness cannot be measured and stays" : "";
}

/// The gain is more than a recording needs; empty when it is not.
std::string GainNote(const LoudnessMatch& match) {
  // Brings -63 LUFS to -23: as loud is the room's own noise in a good recording of that level.
  constexpr double kMost = 40.0;  // dB
  return match.gain <= kMost ? ""
                             : "the loudness is raised by " + Rounded(match.gain) +
                                   " dB; what is that quiet may be nothing but noise";
}

/// Why the clip does not get as long as was asked for; empty when it does.
std::string DurationNote(const EffectChain& chain, const ClipMeasurement& measurement) {
  const DurationRequest& request = *chain.Duration();
  const DurationRange range = request.remix ? RemixRange(*measurement.remix)
                                            : StretchRange(measurement.analysis.Duration());
  if (request.seconds >= range.least && request.seconds <= range.greatest) {
    return "";
  }
  return "the clip can be made " + Rounded(range.least) + " to " + Rounded(range.greatest) +
         " seconds long, not " + Rounded(request.seconds) + "; it gets as near to that as it can";
}

/// The clip as long as its chain asks for.
AudioOpener InTime(const EffectChain& chain, const ClipMeasurement& measurement,
                   const std::string& name, const AudioOpener& opener, const Progress& progress) {
  const DurationRequest& request = *chain.Duration();
  if (request.remix) {
    if (!measurement.remix) {
      throw AudioError(name + " cannot be remixed, as it has no steady beat or is too short; " +
                       "duration.Mode=1 stretches it");
    }
    const RemixPlan plan = PlanRemix(opener, *measurement.remix, request.seconds,
                                     request.favorShortSegments, progress);
    return [opener, plan] { return Remix(opener, plan); };
  }
  const ClipAnalysis& analysis = measurement.analysis;
  const DurationRange range = StretchRange(analysis.Duration());
  const std::int64_t frameCount =
      std::max(1LL, std::llround(std::clamp(request.seconds, range.least, range.greatest) *
                                 analysis.format.sampleRate));
  return [opener, length = analysis.frameCount, frameCount] {
    return Stretch(opener(), length, frameCount);
  };
}

/// What is measured of a stream that passes.
struct Witnesses {
  std::optional<ClipMeter> meter;
  std::optional<PortraitCollector> portrait;

  void Add(const AudioBlock& block) {
    if (meter) meter->Add(block);
    if (portrait) portrait->Add(block);
  }
};

/// Reads the source to its end.
void Drain(AudioSource& source, Witnesses& witnesses, const Progress& progress) {
  ProgressingReader reader(source, progress);
  for (AudioBlock block; reader.Read(block);) witnesses.Add(block);
}

/// Sends the source through the graph into the writer.
std::int64_t Stream(AudioSource& source, Witnesses& before, FilterGraph& graph, Witnesses& after,
                    AudioWriter& writer, const Progress& progress) {
  ProgressingReader reader(source, progress);
  std::int64_t frameCount = 0;
  const auto writeReady = [&] {
    for (AudioBlock ready; graph.Pull(ready);) {
      after.Add(ready);
      writer.Write(ready);
      frameCount += static_cast<std::int64_t>(ready.FrameCount());
    }
  };
  for (AudioBlock block; reader.Read(block);) {
    before.Add(block);
    graph.Push(block);
    writeReady();
  }
  graph.Finish();
  writeReady();
  return frameCount;
}

/// Why a new file cannot have this name, in one line; empty when it can.
std::string FindNameFault(const std::filesystem::path& file, bool replaces) {
  std::error_code error;
  if (std::filesystem::is_directory(file, error)) {
    return Quoted(file) + " is a folder";
  }
  if (!replaces && std::filesystem::exists(file, error)) {
    return Quoted(file) + " exists already";
  }
  return "";
}

}  // namespace

std::string FindOutputFault(const RenderRequest& request) {
  if (!AudioWriter::IsSupported(request.output)) {
    return "the output's name must end in .wav or .flac, not as in " + Quoted(request.output);
  }
  if (const std::string fault = FindFileClash({&request, 1}); !fault.empty()) return fault;
  if (const std::string fault = FindNameFault(request.output, request.replaceOutput);
      !fault.empty() || request.picture.empty()) {
    return fault;
  }
  if (request.picture.extension() != ".png") {
    return "the picture's name must end in .png, not as in " + Quoted(request.picture);
  }
  return FindNameFault(request.picture, request.replaceOutput);
}

std::string StoppedText(const RenderRequest& request) {
  return "stopped; " + Quoted(request.output) + " was not written";
}

namespace {

/// One render, step by step.
class Rendering {
 public:
  Rendering(const Host& host, const RenderRequest& request, const MainThreadCaller& onMainThread)
      : host_(host),
        request_(request),
        onMainThread_(onMainThread),
        input_(request.input, request.progress),
        file_(input_.Open()),
        opener_(input_.Opener()),
        detail_(HasPicture() ? AnalysisDetail::kAll : request.detail) {
    report_.inputFormat = file_.Format();
  }

  RenderReport Run() {
    Plan();
    const EffectChain& chain = report_.chain;
    const double inTime = chain.Duration() ? 0.3 : 0.0;
    Steps steps(request_, {needsMeasurement_ ? 1.0 : 0.0, inTime, chain.Loudness() ? 1.0 : 0.0,
                           request_.isDryRun ? 1.0 : inTime, request_.isDryRun ? 0.0 : 1.0});
    Measure(steps.Next());
    const EffectContext context = ContextOf(report_.inputFormat, measurement_);
    FitDuration(steps.Next());
    FitLoudness(context, steps.Next());
    NoteWhatIsNotHeard(context);
    FilterGraph graph(report_.inputFormat, ChainFilters(chain, context));
    report_.outputFormat = graph.OutputFormat();
    if (const Progress progress = steps.Next(); request_.isDryRun || chain.Duration()) {
      Drain(file_, before_, progress);
    }
    if (request_.isDryRun) {
      MeasureBefore();
    } else {
      Write(graph, steps.Next());
    }
    std::erase(report_.notes, "");
    std::ranges::copy(file_.Notes(), std::back_inserter(report_.notes));
    return report_;
  }

 private:
  void Plan() {
    onMainThread_([this] {
      const ChainPlan plan = PlanChain(host_, request_.look, report_.inputFormat, measurement_);
      report_.chain = plan.chain;
      needsMeasurement_ = plan.needsMeasurement;
      needsRemixMap_ = plan.needsRemixMap;
    });
  }

  void Measure(const Progress& progress) {
    if (needsMeasurement_) {
      measurement_ = request_.analyses == nullptr ? MeasureClip(opener_, needsRemixMap_, progress)
                                                  : MeasureFile(request_.input, needsRemixMap_,
                                                                *request_.analyses, progress);
      if (detail_) {
        report_.before = measurement_->analysis;
        detail_ = AnalysisDetail::kAll;  // as of the input, so that there are two to compare
      }
      Plan();
    }
    if (detail_ && !report_.before) before_.meter.emplace(report_.inputFormat, *detail_);
    if (HasPicture()) before_.portrait.emplace(report_.inputFormat);
  }

  void MeasureBefore() {
    if (before_.meter) report_.before = before_.meter->Measure();
  }

  void FitDuration(const Progress& progress) {
    inTime_ = opener_;
    if (!report_.chain.Duration()) return;
    inTime_ = InTime(report_.chain, *measurement_, Quoted(request_.input), opener_, progress);
    report_.notes.push_back(DurationNote(report_.chain, *measurement_));
  }

  void FitLoudness(const EffectContext& context, const Progress& progress) {
    if (!report_.chain.Loudness()) return;
    report_.loudness = orvelhost::FitLoudness(report_.chain, context, inTime_, progress);
    report_.notes.push_back(LoudnessNote(*report_.loudness, report_.chain.Loudness()->target));
    report_.notes.push_back(GainNote(*report_.loudness));
  }

  void NoteWhatIsNotHeard(const EffectContext& context) {
    const int channelCount = report_.inputFormat.channelCount;
    report_.notes.push_back(HumNote(report_.chain, context));
    report_.notes.push_back(NoiseNote(report_.chain, context));
    for (const std::string& effect : UnheardEffects(report_.chain, channelCount)) {
      report_.notes.push_back(
          effect + " changes nothing, for " + Quoted(request_.input) + " " +
          (channelCount == 1 ? "is mono" : "has " + std::to_string(channelCount) + " channels"));
    }
  }

  void Write(FilterGraph& graph, const Progress& progress) {
    AudioWriter writer(request_.output, report_.outputFormat);
    std::optional<TemporaryFile> picture;
    Witnesses after;
    if (detail_) after.meter.emplace(report_.outputFormat, *detail_);
    if (HasPicture()) {
      picture.emplace(request_.picture);
      after.portrait.emplace(report_.outputFormat);
    }
    if (report_.chain.Duration()) {
      Witnesses none;
      report_.frameCount = Stream(*inTime_(), none, graph, after, writer, progress);
    } else {
      report_.frameCount = Stream(file_, before_, graph, after, writer, progress);
    }
    MeasureBefore();
    if (after.meter) report_.after = after.meter->Measure();
    if (picture) {
      DrawRenderPicture({.title = request_.input.filename().string() + " \u2192 " +
                                  request_.output.filename().string(),
                         .subtitle = request_.pictureCaption,
                         .before = {before_.portrait->Finish(), *report_.before},
                         .after = {after.portrait->Finish(), *report_.after},
                         .loudness = report_.chain.Loudness()},
                        *picture);
    }
    if (const std::int64_t count = writer.CutOffCount(); count > 0) {
      report_.notes.push_back(std::to_string(count) +
                              (count == 1 ? " sample was" : " samples were") +
                              " cut off at full scale; WAV or a lower volume keeps them");
    }
    input_.CheckUnchanged();
    // The output comes last: once it is there, all is.
    if (picture) picture->Commit(request_.replaceOutput);
    try {
      writer.Commit(request_.replaceOutput);
    } catch (const AudioError&) {
      std::error_code error;
      if (picture) std::filesystem::remove(picture->Target(), error);
      throw;
    }
  }

  bool HasPicture() const { return !request_.picture.empty() && !request_.isDryRun; }

  const Host& host_;
  const RenderRequest& request_;
  const MainThreadCaller& onMainThread_;
  InputFile input_;
  FileSource file_;
  AudioOpener opener_;
  std::optional<AnalysisDetail> detail_;
  AudioOpener inTime_;
  bool needsMeasurement_ = false;
  bool needsRemixMap_ = false;
  std::optional<ClipMeasurement> measurement_;
  Witnesses before_;
  RenderReport report_;
};

}  // namespace

RenderReport Render(const Host& host, const RenderRequest& request,
                    const MainThreadCaller& onMainThread) {
  if (const std::string fault = FindOutputFault(request); !fault.empty()) {
    throw AudioError(fault);
  }
  return Rendering(host, request, onMainThread).Run();
}

RenderReport Render(const Host& host, const RenderRequest& request) {
  try {
    return Render(host, request, [](const std::function<void()>& call) { call(); });
  } catch (const Cancelled&) {
    throw AudioError(StoppedText(request));
  }
}

}  // namespace orvelhost
