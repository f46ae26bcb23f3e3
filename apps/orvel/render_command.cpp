#include "apps/orvel/render_command.h"

#include <cstdio>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include <getopt.h>

#include "apps/orvel/command.h"
#include "apps/orvel/exit_code.h"
#include "apps/orvel/interrupt.h"
#include "apps/orvel/progress_bar.h"
#include "host/audio/audio_error.h"
#include "host/catalogue/preset_store.h"
#include "host/effects/filter_check.h"
#include "host/render/renderer.h"
#include "host/render/report_text.h"
#include "host/session/host.h"
#include "host/session/setting.h"

namespace orvelcli {
namespace {

constexpr const char* kUsage =
    "Usage: orvel render IN -o OUT [--mode MODE [--template NAME] [--preset PRESET]]\n"
    "                    [--set SECTION.PARAMETER=VALUE]...\n"
    "\n"
    "Reads the audio of IN (WAV, FLAC, MP3, Ogg, a video and more), applies the preset and the\n"
    "sections that are set, writes OUT (WAV 32 bit float or FLAC 24 bit, by its name) and prints\n"
    "what was measured before and after.\n"
    "\n"
    "  -o, --output OUT   the file to write\n"
    "  -m, --mode MODE    dialog, music, sfx or ambience: what is recorded. It gives the sections\n"
    "                     that can be set, with their curves, reverbs and targets; without it all\n"
    "                     sections are there, as they are built, without curves and reverbs\n"
    "  -p, --preset NAME  a preset of the mode, by its name or its guid; see orvel presets MODE\n"
    "      --template NAME\n"
    "                     the mode as this template configures it; see orvel templates MODE\n"
    "  -s, --set NAME=N   sets a value in its unit, and switches its control on unless the\n"
    "                     control's switch is set, too\n"
    "  -f, --force        replaces OUT when it exists\n"
    "  -q, --quiet        prints nothing but errors and warnings\n"
    "  -h, --help         prints this\n"
    "\n"
    "What can be set:\n";

struct Arguments {
  std::vector<std::string> inputs;
  std::vector<std::string> outputs;
  std::vector<std::string> settings;
  std::vector<std::string> modes;
  std::vector<std::string> presets;
  std::vector<std::string> templates;
  bool force = false;
  bool quiet = false;
  bool help = false;
};

int FailUsage(const std::string& cause) {
  std::cerr << "orvel render: " << cause << "\n";
  return kExit_Usage;
}

/// None, after saying why, when an option is unknown or lacks its value.
std::optional<Arguments> ParseArguments(int argc, char** argv) {
  static const option kOptions[] = {
      {"output", required_argument, nullptr, 'o'},
      {"set", required_argument, nullptr, 's'},
      {"mode", required_argument, nullptr, 'm'},
      {"preset", required_argument, nullptr, 'p'},
      {"force", no_argument, nullptr, 'f'},
      {"quiet", no_argument, nullptr, 'q'},
      {"help", no_argument, nullptr, 'h'},
      {"template", required_argument, nullptr, 't'},
      {nullptr, 0, nullptr, 0},
  };
  Arguments arguments;
  opterr = 0;
  while (true) {
    const int letter = getopt_long(argc, argv, ":o:s:m:p:fqh", kOptions, nullptr);
    switch (letter) {
      case -1:
        arguments.inputs.assign(argv + optind, argv + argc);
        return arguments;
      case 'o':
        arguments.outputs.emplace_back(optarg);
        break;
      case 's':
        arguments.settings.emplace_back(optarg);
        break;
      case 'm':
        arguments.modes.emplace_back(optarg);
        break;
      case 'p':
        arguments.presets.emplace_back(optarg);
        break;
      case 't':
        arguments.templates.emplace_back(optarg);
        break;
      case 'f':
        arguments.force = true;
        break;
      case 'q':
        arguments.quiet = true;
        break;
      case 'h':
        arguments.help = true;
        break;
      case ':':
        FailUsage("the option " + std::string(argv[optind - 1]) + " needs a value");
        return std::nullopt;
      default:
        FailUsage("unknown or misused option " + std::string(argv[optind - 1]) +
                  "; see orvel render --help");
        return std::nullopt;
    }
  }
}

int Run(const Arguments& arguments, const orvelhost::Host& host,
        orvelhost::RenderRequest& request) {
  NoteInterrupts();
  orvelhost::RenderReport report;
  for (const std::string& fault : orvelhost::CheckFilters()) {
    std::cerr << "orvel render: warning: " << fault << "\n";
  }
  try {
    ProgressBar bar;
    request.progress = [&bar](double done) {
      bar.Show(done);
      return !WasInterrupted();
    };
    report = orvelhost::Render(host, request);
  } catch (const orvelhost::AudioError& error) {
    std::cerr << "orvel render: " << error.what() << "\n";
    return WasInterrupted() ? kExit_Interrupted : kExit_Failed;
  }
  for (const std::string& note : report.notes) {
    std::cerr << "orvel render: note: " << note << "\n";
  }
  if (!arguments.quiet) {
    std::cout << orvelhost::FormatLevels(report);
  }
  return kExit_Success;
}

/// Takes up the mode, its template, the preset and the settings that are asked for. Raises
/// UsageError and PresetError when one is wrong.
void ChooseLook(const Arguments& arguments, const orvelhost::Host& host,
                orvelhost::RenderRequest& request) {
  if (arguments.modes.size() > 1 || arguments.presets.size() > 1 ||
      arguments.templates.size() > 1) {
    throw UsageError("give one mode, one template and one preset at the most");
  }
  if (!arguments.modes.empty()) {
    request.mode = CheckMode(arguments.modes.front());
  } else if (!arguments.presets.empty() || !arguments.templates.empty()) {
    throw UsageError("a preset or a template needs its mode; give --mode");
  }
  const auto* manager = orvel::ConfigurationManager::Get();
  if (!arguments.templates.empty()) {
    const auto configuration =
        orvelhost::PresetStore(host).FindTemplate({arguments.templates.front(), request.mode, {}});
    manager->GetConfigPresetHandler(request.mode)->Select(configuration.Guid);
  }
  if (!arguments.presets.empty()) {
    request.preset = orvelhost::PresetStore(host).FindPreset(
        {arguments.presets.front(), request.mode,
         manager->GetCurrentConfigGuidForMode(request.mode)});
  }
  std::string error;
  if (!orvelhost::ParseSettings(arguments.settings, orvelhost::SettableSections(request.mode),
                                request.settings, error)) {
    throw UsageError(error);
  }
}

}  // namespace

int RunRender(int argc, char** argv) {
  const std::optional<Arguments> arguments = ParseArguments(argc, argv);
  if (!arguments) {
    return kExit_Usage;
  }
  const orvelhost::Host host;
  orvelhost::RenderRequest request;
  try {
    ChooseLook(*arguments, host, request);
  } catch (const UsageError& error) {
    return FailUsage(error.what());
  } catch (const orvelhost::PresetError& error) {
    return FailUsage(error.what());
  }
  if (arguments->help) {
    std::cout << kUsage << orvelhost::DescribeSettings(request.mode);
    return kExit_Success;
  }
  if (arguments->inputs.size() != 1) {
    return FailUsage("give one input file, not " + std::to_string(arguments->inputs.size()) +
                     "; see orvel render --help");
  }
  if (arguments->outputs.size() != 1) {
    return FailUsage("give one output with -o, not " + std::to_string(arguments->outputs.size()));
  }
  request.input = arguments->inputs.front();
  request.output = arguments->outputs.front();
  request.replaceOutput = arguments->force;
  request.measureLevels = !arguments->quiet;
  if (const std::string fault = orvelhost::FindOutputFault(request); !fault.empty()) {
    return FailUsage(fault);
  }
  return Run(*arguments, host, request);
}

}  // namespace orvelcli
