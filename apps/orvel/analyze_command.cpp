#include "apps/orvel/analyze_command.h"

#include <iostream>
#include <string>
#include <vector>

#include <getopt.h>

#include "apps/orvel/exit_code.h"
#include "apps/orvel/interrupt.h"
#include "apps/orvel/progress_bar.h"
#include "host/analysis/analysis_report.h"
#include "host/audio/audio_error.h"

namespace orvelcli {
namespace {

constexpr const char* kUsage =
    "Usage: orvel analyze FILE... [--json]\n"
    "\n"
    "Measures the audio of each file (WAV, FLAC, MP3, Ogg, a video and more): integrated loudness\n"
    "and loudness range (EBU R 128), true peak, sample peak, the noise floor of its quietest\n"
    "stretches, the frequency and level of mains hum, duration, sample rate and channels. Levels\n"
    "of noise and hum are root mean squares; a full-scale square wave would be at 0 dBFS.\n"
    "\n"
    "A file that cannot be read is told about and the others are measured; the exit code is then "
    "1.\n"
    "\n"
    "  -j, --json   one JSON object a line, null for what is not there: hum that was not found, "
    "and\n"
    "               levels of silence\n"
    "  -h, --help   prints this\n";

int FailUsage(const std::string& cause) {
  std::cerr << "orvel analyze: " << cause << "; see orvel analyze --help\n";
  return kExit_Usage;
}

orvelhost::ClipAnalysis Analyze(const std::string& file) {
  orvelhost::FileSource source(file);
  ProgressBar bar;
  const orvelhost::ClipAnalysis analysis = orvelhost::AnalyzeClip(source, [&bar](double done) {
    bar.Show(done);
    return !WasInterrupted();
  });
  for (const std::string& note : source.Notes()) {
    std::cerr << "orvel analyze: note: " << note << "\n";
  }
  return analysis;
}

int Run(const std::vector<std::string>& files, bool asJSON) {
  NoteInterrupts();
  int exitCode = kExit_Success;
  for (const std::string& file : files) {
    try {
      const orvelhost::ClipAnalysis analysis = Analyze(file);
      std::cout << (asJSON ? teskcore::serialization::GetJSONUTF8String(
                                 orvelhost::ToJSON(file, analysis), false) +
                                 "\n"
                           : orvelhost::ToText(file, analysis))
                << std::flush;
    } catch (const orvelhost::Cancelled&) {
      return kExit_Interrupted;
    } catch (const orvelhost::AudioError& error) {
      std::cerr << "orvel analyze: " << error.what() << "\n";
      exitCode = kExit_Failed;
    }
  }
  return exitCode;
}

}  // namespace

int RunAnalyze(int argc, char** argv) {
  static const option kOptions[] = {{"json", no_argument, nullptr, 'j'},
                                    {"help", no_argument, nullptr, 'h'},
                                    {nullptr, 0, nullptr, 0}};
  bool asJSON = false;
  opterr = 0;
  for (int letter; (letter = getopt_long(argc, argv, ":jh", kOptions, nullptr)) != -1;) {
    switch (letter) {
      case 'j':
        asJSON = true;
        break;
      case 'h':
        std::cout << kUsage;
        return kExit_Success;
      default:
        return FailUsage("unknown or misused option " + std::string(argv[optind - 1]));
    }
  }
  const std::vector<std::string> files(argv + optind, argv + argc);
  if (files.empty()) {
    return FailUsage("give a file");
  }
  return Run(files, asJSON);
}

}  // namespace orvelcli
