#include "host/render/renderer.h"

#include <algorithm>
#include <system_error>

#include "host/audio/audio_error.h"
#include "host/audio/audio_reader.h"
#include "host/audio/audio_writer.h"
#include "host/audio/filter_graph.h"
#include "host/session/effect_chain.h"

namespace orvelhost {
namespace {

bool KeepGoing(const RenderRequest& request, std::int64_t framesDone, std::int64_t framesStated) {
  if (!request.progress) {
    return true;
  }
  return request.progress(framesStated > 0 ? std::min(1.0, static_cast<double>(framesDone) /
                                                               static_cast<double>(framesStated))
                                           : -1.0);
}

/// Sends the rest of the input through the graph into the writer.
void Stream(const RenderRequest& request, AudioReader& reader, FilterGraph& graph,
            AudioWriter& writer, RenderReport& report) {
  LevelMeter before(report.inputFormat);
  LevelMeter after(report.outputFormat);
  AudioBlock block;
  const auto writeReady = [&] {
    AudioBlock ready;
    while (graph.Pull(ready)) {
      after.Add(ready);
      writer.Write(ready);
      report.frameCount += static_cast<std::int64_t>(ready.FrameCount());
    }
  };
  while (reader.Read(block)) {
    before.Add(block);
    graph.Push(block);
    writeReady();
    if (!KeepGoing(request, report.frameCount, reader.StatedFrameCount())) {
      throw AudioError("stopped; " + Quoted(request.output) + " was not written");
    }
  }
  graph.Finish();
  writeReady();
  report.before = before.Measure();
  report.after = after.Measure();
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

RenderReport Render(const Host& host, const RenderRequest& request) {
  if (const std::string fault = FindOutputFault(request); !fault.empty()) {
    throw AudioError(fault);
  }
  AudioReader reader(request.input);
  RenderReport report;
  report.inputFormat = reader.Format();

  const int channelCount = report.inputFormat.channelCount;
  const boost::intrusive_ptr<Clip> clip(new Clip(request.input.filename().string(), channelCount));
  host.GetSession()->Select({clip});
  ApplySettings(request.settings, host, clip);
  for (const std::string& effect : UnheardEffects(clip->Chain(), channelCount)) {
    report.notes.push_back(
        effect + " changes nothing, for " + Quoted(request.input) + " " +
        (channelCount == 1 ? "is mono" : "has " + std::to_string(channelCount) + " channels"));
  }

  FilterGraph graph(report.inputFormat, ChainFilters(clip->Chain(), {report.inputFormat}));
  report.outputFormat = graph.OutputFormat();
  AudioWriter writer(request.output, report.outputFormat);
  Stream(request, reader, graph, writer, report);
  writer.Commit();
  std::ranges::copy(reader.Notes(), std::back_inserter(report.notes));
  return report;
}

}  // namespace orvelhost
