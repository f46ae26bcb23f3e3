#include "host/render/renderer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <memory>
#include <system_error>

#include "host/analysis/audio_source.h"
#include "host/analysis/filtered_source.h"
#include "host/analysis/loudness_match.h"
#include "host/analysis/progress.h"
#include "host/audio/audio_error.h"
#include "host/audio/audio_writer.h"
#include "host/audio/filter_graph.h"
#include "host/effects/effect_catalogue.h"
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

/// Measures the sound behind the shaping effects, made louder by `gain` (dB).
Levels MeasureShaped(const EffectChain& chain, const EffectContext& context, AudioSource& source,
                     double gain, const Progress& progress) {
  FilteredSource shaped(source, ShapingFilters(chain, context));
  ProgressingReader reader(shaped, progress);
  LevelMeter meter(shaped.Format());
  const auto factor = static_cast<float>(std::pow(10.0, gain / 20.0));
  AudioBlock block;
  while (reader.Read(block)) {
    for (int channel = 0; gain != 0.0 && channel < block.ChannelCount(); ++channel) {
      for (float& sample : block.Channel(channel)) sample *= factor;
    }
    meter.Add(block);
  }
  return meter.Measure();
}

/// Measures the sound behind the shaping effects and sets the gain that it needs. Quiet sound is
/// measured once more as loud as it will be: what lies below the meter's gate of -70 LUFS before
/// the gain may count behind it.
LoudnessMatch FitLoudness(EffectChain& chain, const EffectContext& context,
                          const AudioOpener& opener, const Progress& progress) {
  constexpr double kQuiet = -50.0;  // LUFS
  const LoudnessTarget target = *chain.Loudness();
  const Levels levels = MeasureShaped(chain, context, *opener(), 0.0, progress);
  LoudnessMatch match = MatchLoudness(levels.loudness, levels.truePeak, target);
  if (levels.loudness < kQuiet && std::isfinite(levels.truePeak)) {
    const bool isGated = match.status == kAnalysis_NotMeasurable;
    const double gain = isGated ? target.ceiling - levels.truePeak : match.gain;
    const Levels louder = MeasureShaped(chain, context, *opener(), gain, progress);
    match = MatchLoudness(louder.loudness - gain, levels.truePeak, target);
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

/// Why the clip does not get as long as was asked for; empty when it does.
std::string DurationNote(const Clip& clip) {
  const std::optional<DurationRequest>& request = clip.Chain().Duration();
  if (!request) {
    return "";
  }
  const ClipMeasurement& measurement = *clip.Measurement();
  const DurationRange range = request->remix ? RemixRange(*measurement.remix)
                                             : StretchRange(measurement.analysis.Duration());
  if (request->seconds >= range.least && request->seconds <= range.greatest) {
    return "";
  }
  return "the clip can be made " + Rounded(range.least) + " to " + Rounded(range.greatest) +
         " seconds long, not " + Rounded(request->seconds) + "; it gets as near to that as it can";
}

/// Another source, with the levels of all that was read from it.
class MeteredSource : public AudioSource {
 public:
  /// Both must outlive it.
  MeteredSource(AudioSource& source, LevelMeter& meter) : source_(source), meter_(meter) {}

  const AudioFormat& Format() const override { return source_.Format(); }
  std::int64_t StatedFrameCount() const override { return source_.StatedFrameCount(); }
  bool Read(AudioBlock& block) override {
    const bool any = source_.Read(block);
    if (any) {
      meter_.Add(block);
    }
    return any;
  }

 private:
  AudioSource& source_;
  LevelMeter& meter_;
};

/// The clip as long as its chain asks for; as it is when that asks for nothing.
AudioOpener InTime(const Clip& clip, const std::string& name, const AudioOpener& opener,
                   const Progress& progress) {
  const std::optional<DurationRequest>& request = clip.Chain().Duration();
  if (!request) {
    return opener;
  }
  const ClipMeasurement& measurement = *clip.Measurement();
  if (request->remix) {
    if (!measurement.remix) {
      throw AudioError(name + " cannot be remixed, as it has no steady beat or is too short; " +
                       "duration.Mode=1 stretches it");
    }
    const RemixPlan plan = PlanRemix(opener, *measurement.remix, request->seconds,
                                     request->favorShortSegments, progress);
    return [opener, plan] { return Remix(opener, plan); };
  }
  const ClipAnalysis& analysis = measurement.analysis;
  const DurationRange range = StretchRange(analysis.Duration());
  const std::int64_t frameCount = std::llround(
      std::clamp(request->seconds, range.least, range.greatest) * analysis.format.sampleRate);
  return [opener, length = analysis.frameCount, frameCount] {
    return Stretch(opener(), length, frameCount);
  };
}

/// Sends the source through the graph into the writer, and past the meter unless that is null.
void Stream(AudioSource& source, FilterGraph& graph, AudioWriter& writer, LevelMeter* meter,
            const Progress& progress, RenderReport& report) {
  ProgressingReader reader(source, progress);
  AudioBlock block;
  const auto writeReady = [&] {
    AudioBlock ready;
    while (graph.Pull(ready)) {
      if (meter != nullptr) {
        meter->Add(ready);
      }
      writer.Write(ready);
      report.frameCount += static_cast<std::int64_t>(ready.FrameCount());
    }
  };
  while (reader.Read(block)) {
    graph.Push(block);
    writeReady();
  }
  graph.Finish();
  writeReady();
}

}  // namespace

std::string FindOutputFault(const RenderRequest& request) {
  const std::string name = Quoted(request.output);
  if (!AudioWriter::IsSupported(request.output)) {
    return "the output's name must end in .wav or .flac, not as in " + name;
  }
  std::error_code error;
  if (std::filesystem::equivalent(request.input, request.output, error)) {
    return "input and output are the same file, " + name;
  }
  if (std::filesystem::is_directory(request.output, error)) {
    return name + " is a folder";
  }
  if (!request.replaceOutput && std::filesystem::exists(request.output, error)) {
    return name + " exists already";
  }
  return "";
}

namespace {

RenderReport RenderSteps(const Host& host, const RenderRequest& request) {
  FileSource file(request.input);
  RenderReport report;
  report.inputFormat = file.Format();
  const int channelCount = report.inputFormat.channelCount;
  const AudioOpener opener = OpenerOf(request.input);

  const boost::intrusive_ptr<Clip> clip(
      new Clip(request.input.filename().string(), report.inputFormat));
  if (!request.mode.empty()) {
    clip->SetAdjustmentsMode(request.mode);
  }
  bool isMeasured = false;
  clip->SetMeasurer([&] { isMeasured = true; });
  const auto models = ApplySettings(request.preset, request.settings, request.mode, host, clip);
  const bool isFitted = clip->Chain().Loudness().has_value();

  Steps steps(request, {isMeasured ? 1.0 : 0.0, clip->Chain().Duration() ? 0.3 : 0.0,
                        isFitted ? 1.0 : 0.0, 1.0});
  if (const Progress progress = steps.Next(); isMeasured) {
    clip->SetMeasurement(MeasureClip(opener, clip->WantsRemix(), progress));
  }
  const AudioOpener inTime = InTime(*clip, Quoted(request.input), opener, steps.Next());
  report.notes.push_back(DurationNote(*clip));
  const EffectContext context = ContextOf(*clip);
  if (const Progress progress = steps.Next(); isFitted) {
    const LoudnessMatch match = FitLoudness(clip->Chain(), context, inTime, progress);
    report.notes.push_back(LoudnessNote(match, clip->Chain().Loudness()->target));
  }
  report.notes.push_back(HumNote(clip->Chain(), context));
  std::erase(report.notes, "");
  for (const std::string& effect : UnheardEffects(clip->Chain(), channelCount)) {
    report.notes.push_back(
        effect + " changes nothing, for " + Quoted(request.input) + " " +
        (channelCount == 1 ? "is mono" : "has " + std::to_string(channelCount) + " channels"));
  }

  FilterGraph graph(report.inputFormat, ChainFilters(clip->Chain(), context));
  report.outputFormat = graph.OutputFormat();
  AudioWriter writer(request.output, report.outputFormat);
  LevelMeter before(report.inputFormat);
  LevelMeter after(report.outputFormat);
  MeteredSource metered(file, before);
  AudioSource& source = request.measureLevels ? static_cast<AudioSource&>(metered) : file;
  LevelMeter* meter = request.measureLevels ? &after : nullptr;
  if (clip->Chain().Duration()) {
    for (AudioBlock block; source.Read(block);) {
    }
    Stream(*inTime(), graph, writer, meter, steps.Next(), report);
  } else {
    Stream(source, graph, writer, meter, steps.Next(), report);
  }
  writer.Commit();
  if (request.measureLevels) {
    report.before = before.Measure();
    report.after = after.Measure();
  }
  std::ranges::copy(file.Notes(), std::back_inserter(report.notes));
  return report;
}

}  // namespace

RenderReport Render(const Host& host, const RenderRequest& request) {
  if (const std::string fault = FindOutputFault(request); !fault.empty()) {
    throw AudioError(fault);
  }
  try {
    return RenderSteps(host, request);
  } catch (const Cancelled&) {
    throw AudioError("stopped; " + Quoted(request.output) + " was not written");
  }
}

}  // namespace orvelhost
