#include "host/factory/factory_documents.h"

#include <cassert>

#include "host/factory/adjustments_modes.h"
#include "host/factory/templates.h"
#include "host/factory/user_presets.h"
#include "orvel/orvel.h"

namespace orvelhost {
namespace {

template <typename Record>
std::string Text(const std::vector<Record>& presets) {
  std::string text;
  [[maybe_unused]] const bool written = orvel::WritePresets(presets, text);
  assert(written);
  return text;
}

}  // namespace

std::vector<FactoryDocument> FactoryDocuments() {
  return {{"DefaultAdjustmentsModes.json", AdjustmentsModesDocument()},
          {"OrvelConfigPresets.json", Text(FactoryTemplates())},
          {"OrvelPresets.json", Text(FactoryUserPresets())}};
}

bool WriteFactoryDocuments(const std::filesystem::path& folder, std::string& error) {
  using namespace teskcore;
  if (!std::filesystem::is_directory(folder)) {
    error = "no folder '" + folder.string() + "'";
    return false;
  }
  for (const FactoryDocument& document : FactoryDocuments()) {
    const std::filesystem::path path = folder / document.fileName;
    try {
      filesupport::SafeSave save{filesupport::File(path.u16string())};
      utility::FileUtils::SimpleWriteStringToFile(save.GetTempFile().FullPath(), document.text);
      save.Commit();
    } catch (const filesupport::file_exception& fault) {
      error = fault.what();
      return false;
    }
  }
  return true;
}

}  // namespace orvelhost
