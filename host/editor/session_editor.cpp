#include "host/editor/session_editor.h"

#include <algorithm>
#include <numeric>

#include "host/catalogue/mode_catalogue.h"

namespace orvelhost {
namespace {

constexpr char kNoMode[] = "none";

}  // namespace

void SessionEditor::AddClips(const std::vector<std::filesystem::path>& files) {
  const std::size_t first = GetSession().GetClips().size() + 1;
  GetSession().AddClips(files);
  GetUndoStack().MarkModified();
  std::vector<std::size_t> added(files.size());
  std::iota(added.begin(), added.end(), first);
  Select(added);
}

void SessionEditor::Select(const std::vector<std::size_t>& numbers) {
  std::vector<std::size_t> indices;
  for (const std::size_t number : numbers) {
    if (number < 1 || number > GetSession().GetClips().size()) {
      throw EditError("there is no clip " + std::to_string(number));
    }
    indices.push_back(number - 1);
  }
  std::ranges::sort(indices);
  indices.erase(std::unique(indices.begin(), indices.end()), indices.end());
  GetSession().Select(indices);
  clips_.Announce();
}

std::vector<std::size_t> SessionEditor::GetNumbers() const {
  std::vector<std::size_t> numbers(GetSession().GetClips().size());
  std::iota(numbers.begin(), numbers.end(), std::size_t{1});
  return numbers;
}

std::vector<std::size_t> SessionEditor::GetSelection() const {
  std::vector<std::size_t> numbers = GetSession().GetSelection();
  for (std::size_t& number : numbers) ++number;
  return numbers;
}

void SessionEditor::SetMode(const std::string& modeID) {
  clips_.Require();
  if (modeID == kNoMode) {
    clips_.Execute(orvel::CreateSetMixTypeAction(clips_.GetModel(), orvel::kAdjustmentsModeUnknown,
                                                 orvel::UserPreset(), u"Set Mode none"));
    return;
  }
  if (!IsMode(modeID)) {
    throw EditError("there is no mode '" + modeID + "', only " + ListModes() + " and none");
  }
  if (orvel::ConfigurationManager::Get()->GetCurrentConfigGuidForMode(modeID).IsNull()) {
    clips_.GetStore().GetFactoryTemplate(modeID);  // raises: controls would have no ranges
  }
  clips_.Execute(orvel::CreateSetMixTypeWithDefaultPresetAction(
      clips_.GetModel(), modeID, orvel::UTF8to16("Set Mode " + modeID)));
}

std::string SessionEditor::Undo() {
  if (!GetUndoStack().Undo()) throw EditError("there is nothing to undo");
  clips_.Announce();
  return GetUndoStack().GetStepNames()[GetUndoStack().GetDoneCount()];
}

std::string SessionEditor::Redo() {
  if (!GetUndoStack().Redo()) throw EditError("there is nothing to redo");
  clips_.Announce();
  return GetUndoStack().GetStepNames()[GetUndoStack().GetDoneCount() - 1];
}

void SessionEditor::Save(const std::filesystem::path& file) {
  WriteSession(GetSession().GetDocument(), file);
  GetUndoStack().MarkSaved();
}

void SessionEditor::Open(const std::filesystem::path& file) {
  const SessionDocument document = ReadSession(file);
  GetUndoStack().Clear();
  GetSession().SetDocument(document);
  clips_.Announce();
}

}  // namespace orvelhost
