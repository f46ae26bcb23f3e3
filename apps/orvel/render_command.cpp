#include "apps/orvel/render_command.h"

#include <algorithm>
#include <charconv>
#include <iostream>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include "apps/orvel/command.h"
#include "apps/orvel/exit_code.h"
#include "apps/orvel/interrupt.h"
#include "apps/orvel/progress_bar.h"
#include "host/audio/audio_error.h"
#include "host/audio/temporary_file.h"
#include "host/catalogue/json_values.h"
#include "host/catalogue/mode_catalogue.h"
#include "host/catalogue/preset_store.h"
#include "host/catalogue/setting.h"
#include "host/effects/filter_check.h"
#include "host/render/file_clash.h"
#include "host/render/output_folder.h"
#include "host/render/render_batch.h"
#include "host/render/render_list.h"
#include "host/render/render_record.h"
#include "host/render/report_text.h"
#include "host/session/host.h"
#include "host/session/text_file.h"

namespace orvelcli {
namespace {

using orvelhost::MakeArray;
using orvelhost::Quoted;
using orvelhost::RenderOutcome;
using orvelhost::RenderRequest;
using teskcore::serialization::AddToObject;
using teskcore::serialization::G_NullType;
using teskcore::serialization::JSONValue;

JSONValue NameAndGuid(const std::string& name, const orvel::Guid& guid) {
  return orvelhost::MakeObject(
      {{"name", orvelhost::EnglishName(name)}, {"guid", guid.AsUTF8String()}});
}

/// Takes up the mode, its template, the preset and the settings that are asked for; `asked` tells
/// them in the report. Raises UsageError when one is wrong, PresetError when the preset folder
/// cannot be used.
orvelhost::Look ChooseLook(const CommandLine& line, const orvelhost::Host& host, JSONValue& asked) {
  orvelhost::Look look;
  look.mode = CheckMode(line.Value("mode"));
  const std::string preset = line.Value("preset");
  const std::string configuration = line.Value("template");
  if (look.mode.empty() && (line.Has("preset") || line.Has("template"))) {
    throw UsageError("a preset or a template needs its mode; give --mode");
  }
  AddToObject(asked, "mode", look.mode.empty() ? JSONValue(G_NullType) : JSONValue(look.mode));
  JSONValue templateUsed = G_NullType;
  JSONValue presetUsed = G_NullType;
  if (!look.mode.empty()) {
    const orvelhost::PresetStore store(host);
    // Without its template a mode would have other values than those that it is known for.
    if (!line.Has("template")) store.GetFactoryTemplate(look.mode);
    try {
      const auto* manager = orvel::ConfigurationManager::Get();
      if (line.Has("template")) {
        manager->GetConfigPresetHandler(look.mode)->Select(
            store.FindTemplate({configuration, look.mode, {}}).Guid);
      }
      const orvel::Guid current = manager->GetCurrentConfigGuidForMode(look.mode);
      for (const auto& one : store.GetTemplates(look.mode)) {
        if (one.Guid == current) templateUsed = NameAndGuid(one.Name, one.Guid);
      }
      if (line.Has("preset")) {
        look.preset = store.FindPreset({preset, look.mode, current});
        presetUsed = NameAndGuid(look.preset->Name, look.preset->Guid);
      }
    } catch (const orvelhost::PresetError& error) {
      throw UsageError(error.what());
    }
  }
  std::string error;
  const auto settings = line.Values("set");
  if (!orvelhost::ParseSettings(settings, orvelhost::SettableSections(look.mode), look.settings,
                                error)) {
    throw UsageError(error);
  }
  AddToObject(asked, "template", templateUsed);
  AddToObject(asked, "preset", presetUsed);
  AddToObject(asked, "settings", MakeArray(settings));
  return look;
}

int ReadJobCount(const CommandLine& line) {
  constexpr int kMost = 256;
  const std::string text = line.Value("jobs");
  if (!line.Has("jobs")) {
    return std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 1, kMost);
  }
  int count = 0;
  const auto [end, status] = std::from_chars(text.data(), text.data() + text.size(), count);
  if (status != std::errc() || end != text.data() + text.size() || count < 1 || count > kMost) {
    throw UsageError("--jobs takes 1 to 256, not '" + text + "'");
  }
  return count;
}

/// Raises UsageError when the files that are to be written cannot be accepted. Where the output is
/// a folder, a file that is there already stops one render only, which tells so itself.
void CheckFiles(const CommandLine& line, const orvelhost::RenderList& list,
                const std::vector<RenderRequest>& requests) {
  const std::filesystem::path report = line.Value("report");
  std::string fault = orvelhost::FindFileClash(requests, report);
  if (fault.empty() && list.folder.empty()) fault = orvelhost::FindOutputFault(requests.front());
  std::error_code error;
  if (fault.empty() && !line.Has("force") && std::filesystem::exists(report, error)) {
    fault = Quoted(report) + " exists already";
  }
  if (!fault.empty()) throw UsageError(fault);
}

/// Tells on the terminal how the renders come on, and what came of each.
class Teller {
 public:
  Teller(const Command& command, const CommandLine& line,
         const std::vector<RenderRequest>& requests)
      : command_(command), line_(line), requests_(requests) {}

  /// A message on the error stream.
  void Tell(const std::string& text) const { std::cerr << command_.name << ": " << text << "\n"; }

  bool ShowProgress(const std::vector<double>& shares) {
    if (!bar_.IsVisible()) return !WasInterrupted();
    double sum = 0.0;
    std::string text;
    for (std::size_t index = 0; index < shares.size(); ++index) {
      const double share = shares[index];
      sum += std::max(0.0, share) / static_cast<double>(shares.size());
      if (share == 0.0 || share == 1.0) continue;
      text += (text.empty() ? "" : ", ") + orvelhost::Printable(requests_[index].input.filename()) +
              (share < 0.0 ? "" : " " + std::to_string(static_cast<int>(share * 100.0)) + "%");
    }
    if (shares.size() == 1) {
      bar_.Show(shares.front());
    } else {
      bar_.Show(sum, std::to_string(toldCount_) + " of " + std::to_string(shares.size()) +
                         (text.empty() ? "" : ": ") + text);
    }
    return !WasInterrupted();
  }

  void Finish(std::size_t index, const RenderOutcome& outcome) {
    bar_.Wipe();
    ++toldCount_;
    const RenderRequest& request = requests_[index];
    const bool isOneOfMany = requests_.size() > 1;
    if (outcome.status == RenderOutcome::kFailed) Tell(outcome.error);
    const std::string name = Quoted(request.input);
    for (const std::string& note : outcome.report.notes) {
      const bool isNamed = !isOneOfMany || note.find(name) != std::string::npos;
      Tell(std::string("note: ").append(isNamed ? "" : name + ": ").append(note));
    }
    if (outcome.status != RenderOutcome::kDone || line_.IsQuiet() || line_.AsJSON()) return;
    if (isOneOfMany || request.isDryRun) {
      std::cout << orvelhost::Printable(request.input) << " -> "
                << orvelhost::Printable(request.output) << (request.isDryRun ? ", not written" : "")
                << "\n";
    }
    if (request.isDryRun) std::cout << orvelhost::DescribeChain(outcome.report);
    std::cout << orvelhost::FormatLevels(outcome.report) << std::flush;
  }

 private:
  const Command& command_;
  const CommandLine& line_;
  const std::vector<RenderRequest>& requests_;
  ProgressBar bar_;
  std::size_t toldCount_ = 0;
};

JSONValue MakeReport(const std::vector<RenderRequest>& requests,
                     const std::vector<RenderOutcome>& outcomes, const orvelhost::RenderList& list,
                     JSONValue asked) {
  JSONValue files = teskcore::serialization::JSONArray();
  for (std::size_t index = 0; index < requests.size(); ++index) {
    teskcore::serialization::AppendToArray(files,
                                           orvelhost::ToJSON(requests[index], outcomes[index]));
  }
  AddToObject(asked, "files", files);
  AddToObject(asked, "skipped", MakeArray(list.skipped));
  AddToObject(asked, "errors", MakeArray(list.faults));
  return asked;
}

/// What is asked for, as a line for the picture.
std::string Caption(const CommandLine& line, const orvelhost::Look& look) {
  std::string caption = look.mode;
  const auto add = [&caption](const std::string& text, const char* separator) {
    if (!text.empty()) caption += (caption.empty() ? "" : separator) + text;
  };
  add(line.Value("template"), " \u00b7 ");
  add(look.preset ? orvelhost::EnglishName(look.preset->Name) : "", " \u00b7 ");
  const char* separator = " \u00b7 ";
  for (const std::string& setting : line.Values("set")) {
    add(setting, separator);
    separator = ", ";
  }
  return caption;
}

/// The folder of the pictures, when there are several outputs. Raises UsageError when it is none.
std::filesystem::path PictureFolder(const CommandLine& line, const orvelhost::RenderList& list) {
  const std::filesystem::path folder = line.Value("picture");
  if (folder.empty() || list.folder.empty()) return {};
  std::error_code error;
  if (folder.extension() == ".png" ||
      (std::filesystem::exists(folder, error) && !std::filesystem::is_directory(folder, error))) {
    throw UsageError("where the output is a folder the pictures go into one, too, and " +
                     Quoted(folder) + " is none");
  }
  return folder;
}

std::vector<RenderRequest> MakeRequests(const orvelhost::RenderList& list, const CommandLine& line,
                                        const orvelhost::Look& look) {
  RenderRequest request;
  request.look = look;
  request.replaceOutput = line.Has("force");
  request.isDryRun = line.Has("dry-run");
  if (line.Has("report") || line.AsJSON()) {
    request.detail = orvelhost::AnalysisDetail::kAll;
  } else if (line.IsQuiet()) {
    request.detail = std::nullopt;
  }
  const std::filesystem::path pictureFolder = PictureFolder(line, list);
  request.picture = line.Value("picture");
  request.pictureCaption = Caption(line, look);
  orvelhost::OutputNames pictures;
  std::vector<RenderRequest> requests;
  for (const auto& task : list.tasks) {
    request.input = task.input;
    request.output = task.output;
    if (!pictureFolder.empty()) {
      request.picture = pictureFolder / pictures.Take(task.output, ".png");
    }
    requests.push_back(request);
  }
  return requests;
}

int RenderAll(const Command& command, const CommandLine& line) {
  const orvelhost::Host host;
  JSONValue asked;
  const orvelhost::Look look = ChooseLook(line, host, asked);
  PrintNotes(command, line, host);
  const int jobCount = ReadJobCount(line);
  if (line.Words().empty()) throw UsageError("give one input file or more");
  if (line.Value("output").empty()) throw UsageError("give one output with -o");
  orvelhost::RenderList list;
  std::string error;
  if (!orvelhost::ListRenders({line.Words().begin(), line.Words().end()}, line.Value("output"),
                              list, error)) {
    throw UsageError(error);
  }
  const std::vector<RenderRequest> requests = MakeRequests(list, line, look);
  CheckFiles(line, list, requests);
  const std::filesystem::path reportFile = line.Value("report");

  const InterruptScope interrupts;
  Teller teller(command, line, requests);
  for (const std::string& fault : orvelhost::CheckFilters()) teller.Tell("warning: " + fault);
  for (const std::string& skipped : list.skipped) {
    if (!line.IsQuiet()) teller.Tell("note: " + skipped);
  }
  for (const std::string& fault : list.faults) teller.Tell(fault);
  const bool isDryRun = line.Has("dry-run");
  const orvelhost::OutputFolder folder(isDryRun ? "" : list.folder);
  const orvelhost::OutputFolder pictureFolder(isDryRun ? "" : PictureFolder(line, list));
  if (!reportFile.empty() && !isDryRun) {
    const orvelhost::TemporaryFile trial(reportFile);  // not only when hours of work are done
  }
  const auto outcomes = orvelhost::RenderBatch(
      host, requests, jobCount,
      {[&teller](std::size_t index, const RenderOutcome& one) { teller.Finish(index, one); },
       [&teller](const std::vector<double>& shares) { return teller.ShowProgress(shares); }});

  AddToObject(asked, "dry_run", JSONValue(isDryRun));
  const JSONValue report = MakeReport(requests, outcomes, list, asked);
  if (line.AsJSON()) PrintJSON(report);
  if (!reportFile.empty() && !isDryRun) {
    orvelhost::WriteTextFile(reportFile,
                             teskcore::serialization::GetJSONUTF8String(report, true) + "\n");
  }
  const auto count = [&outcomes](RenderOutcome::Status status) {
    return std::ranges::count(outcomes, status, &RenderOutcome::status);
  };
  const auto done = count(RenderOutcome::kDone);
  if (count(RenderOutcome::kStopped) > 0) {
    teller.Tell(requests.size() == 1
                    ? outcomes.front().error
                    : "stopped; " + std::to_string(done) + " of " +
                          std::to_string(requests.size()) + " files were rendered");
    return kExit_Interrupted;
  }
  return list.faults.empty() && static_cast<std::size_t>(done) == requests.size() ? kExit_Success
                                                                                  : kExit_Failed;
}

std::string DescribeSettable(const CommandLine& line) {
  const orvelhost::Host host;
  JSONValue asked;
  return orvelhost::DescribeSettings(ChooseLook(line, host, asked).mode);
}

const Command kRender = {
    "orvel render",
    "Usage: orvel render FILE... -o OUT [--mode MODE [--template NAME] [--preset PRESET]]\n"
    "                    [--set SECTION.PARAMETER=VALUE]... [--report FILE]\n"
    "                    [--picture PNG] [--jobs N] [--dry-run] [--force] [--json] [--quiet]\n"
    "\n"
    "Reads the audio of each FILE (WAV, FLAC, MP3, Ogg, a video and more), applies the preset and\n"
    "the sections that are set, writes the result and prints what was measured before and after.\n"
    "\n"
    "For one FILE, OUT is a file: WAV (32 bit float) or FLAC (24 bit), by its name. For several,\n"
    "and for a folder, whose audio files are taken and whose folders are not, OUT is a folder,\n"
    "as it is with a slash at its end and where a folder stands; it is made when it is not there.\n"
    "In it FLAC stays FLAC and all else becomes WAV, and a name that comes twice gets a number.\n"
    "A file that fails leaves nothing behind and the others are rendered; the exit code is then "
    "1.\n"
    "\n"
    "  -o, --output OUT   the file or folder to write\n"
    "  -m, --mode MODE    dialog, music, sfx or ambience: what is recorded. It gives the sections\n"
    "                     that can be set, with their curves, reverbs and targets; without it all\n"
    "                     sections are there, as they are built, without curves and reverbs\n"
    "  -p, --preset NAME  a preset of the mode, by its name or its guid; see orvel presets MODE\n"
    "      --template NAME\n"
    "                     the mode as this template configures it; see orvel templates MODE\n"
    "  -s, --set NAME=N   sets a value in its unit, and switches its control on unless the\n"
    "                     control's switch is set, too\n"
    "      --report FILE  writes a JSON file: what was measured of each file before and after, "
    "and\n"
    "                     what was done\n"
    "      --picture PNG  draws waveform, loudness and spectrum before and after; where OUT is a\n"
    "                     folder, PNG names one, too, and each output has its picture in it\n"
    "      --jobs N       renders N files at a time, else as many as there are processors; the\n"
    "                     same files come out whatever N is\n"
    "      --dry-run      measures, and prints what would be done; writes nothing,\n"
    "                     no report and no picture either\n"
    "  -f, --force        replaces files that exist\n"
    "  -j, --json         prints the report\n"
    "  -q, --quiet        prints nothing but errors and what to know about an output\n"
    "  -h, --help         prints this\n"
    "\n"
    "What can be set:\n",
    {{"output", 'o', true},
     {"mode", 'm', true},
     {"preset", 'p', true},
     {"template", 0, true},
     {"set", 's', true},
     {"report", 0, true},
     {"picture", 0, true},
     {"jobs", 0, true},
     {"dry-run", 0, false},
     {"force", 'f', false}},
    &RenderAll,
    &DescribeSettable};

}  // namespace

int RunRender(int argc, char** argv) { return RunCommand(kRender, argc, argv); }

}  // namespace orvelcli
