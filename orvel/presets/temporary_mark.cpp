#include "orvel/presets/temporary_mark.h"

#include <cstdlib>
#include <exception>
#include <string>

#include <unistd.h>

#include "orvel/core/byte_stream.h"
#include "orvel/core/file.h"
#include "orvel/core/file_utils.h"
#include "orvel/core/temp_name.h"
#include "orvel/core/text.h"
#include "orvel/presets/preset_file.h"
#include "orvel/presets/preset_folder.h"
#include "orvel/presets/preset_trace.h"

namespace orvel {
namespace {

constexpr char16_t kTemporaryMarkName[] = u".temporary";

std::string MarkText(const Dir& folder, const Guid& guid) {
  return guid.AsUTF8String() + "\n" + UTF16to8(folder.Parent().GetName()) + "/" +
         UTF16to8(folder.GetName()) + "\n";
}

// Whether the folder's mark is that of this preset; `process` gets the number in it.
bool ReadMark(const Dir& folder, const Guid& guid, long& process) {
  try {
    const std::string text = ReadWholeFile(File(folder, kTemporaryMarkName));
    const std::string expected = MarkText(folder, guid);
    if (!text.starts_with(expected)) return false;
    process = std::strtol(text.c_str() + expected.size(), nullptr, 10);
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

// A folder that shows nothing may hold some.
bool MayHoldUserPresets(const Dir& folder) {
  bool isAny = false;
  return !ForEachFile(folder, IsPresetFileName, [&isAny](const File&) { isAny = true; }) || isAny;
}

}  // namespace

bool WriteTemporaryMark(const Dir& folder, const Guid& guid) {
  if (!DeleteTemporaryMark(folder)) return false;  // it may be a link
  try {
    FileUtils::SimpleWriteStringToFile(File(folder, kTemporaryMarkName).FullPath(),
                                       MarkText(folder, guid) + std::to_string(getpid()));
    return true;
  } catch (const file_exception& error) {
    TracePresetDetail(error.what());
    return false;
  }
}

bool DeleteTemporaryMark(const Dir& folder) {
  return DeletePresetFile(File(folder, kTemporaryMarkName));
}

bool IsMarkedTemporary(const Dir& folder, const Guid& guid) {
  long process = 0;
  return ReadMark(folder, guid, process);
}

bool ClearAbandonedTemporary(const Dir& folder) {
  const File mark(folder, kTemporaryMarkName);
  if (!mark.Exists()) return false;
  const File file(folder, kConfigFileName);
  Preset<ConfigPresetData> preset;
  long process = 0;
  const bool isWhole = file.Exists() && ReadPresetFile(file, preset);
  if (isWhole && ReadMark(folder, preset.Guid, process)) {
    if (teskcore::filesupport::IsOtherProcess(process)) return false;
    if (!MayHoldUserPresets(folder)) DeletePresetFile(file);
  }
  return DeletePresetFile(mark);
}

}  // namespace orvel
