#include "apps/orvel/analyze_command.h"

#include <iostream>
#include <string>

#include "apps/orvel/command.h"
#include "apps/orvel/exit_code.h"
#include "apps/orvel/interrupt.h"
#include "apps/orvel/progress_bar.h"
#include "host/analysis/analysis_report.h"
#include "host/audio/audio_error.h"
#include "host/render/input_file.h"

namespace orvelcli {
namespace {

orvelhost::ClipAnalysis Analyze(const std::string& file, const Command& command, bool isQuiet) {
  ProgressBar bar;
  const auto progress = [&bar](double done) {
    bar.Show(done);
    return !WasInterrupted();
  };
  const orvelhost::InputFile input(file, progress);
  orvelhost::FileSource source = input.Open();
  const orvelhost::ClipAnalysis analysis = orvelhost::AnalyzeClip(source, progress);
  bar.Wipe();
  for (const std::string& note : source.Notes()) {
    if (!isQuiet) std::cerr << command.name << ": note: " << note << "\n";
  }
  return analysis;
}

int AnalyzeAll(const Command& command, const CommandLine& line) {
  if (line.Words().empty()) throw UsageError("give a file");
  const InterruptScope interrupts;
  int exitCode = kExit_Success;
  for (const std::string& file : line.Words()) {
    try {
      const orvelhost::ClipAnalysis analysis = Analyze(file, command, line.IsQuiet());
      std::cout << (line.AsJSON() ? teskcore::serialization::GetJSONUTF8String(
                                        orvelhost::ToJSON(file, analysis), false) +
                                        "\n"
                                  : orvelhost::ToText(file, analysis))
                << std::flush;
      if (!std::cout) break;  // nobody reads on; the program tells so at its end
    } catch (const orvelhost::Cancelled&) {
      return kExit_Interrupted;
    } catch (const orvelhost::AudioError& error) {
      std::cerr << command.name << ": " << error.what() << "\n";
      exitCode = kExit_Failed;
    }
  }
  return exitCode;
}

const Command kAnalyze = {
    "orvel analyze",
    "Usage: orvel analyze FILE... [--json]\n"
    "\n"
    "Measures the audio of each file (WAV, FLAC, MP3, Ogg, a video and more): integrated loudness\n"
    "and loudness range (EBU R 128), true peak, sample peak, the noise floor of its quietest\n"
    "stretches, the frequency and level of mains hum, duration, sample rate and channels. Levels\n"
    "of noise and hum are root mean squares; a full-scale square wave would be at 0 dBFS.\n"
    "\n"
    "A file that cannot be read is told about and the others are measured; the exit code is then\n"
    "1.\n"
    "\n"
    "  -j, --json   one JSON object a line, null for what is not there: hum that was not found,\n"
    "               levels of silence, loudness at sample rates below 3364 Hz\n"
    "  -q, --quiet  tells no notes of damage that was read past\n"
    "  -h, --help   prints this\n",
    {},
    &AnalyzeAll};

}  // namespace

int RunAnalyze(int argc, char** argv) { return RunCommand(kAnalyze, argc, argv); }

}  // namespace orvelcli
