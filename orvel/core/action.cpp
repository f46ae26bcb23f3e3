#include "orvel/core/action.h"

#include <algorithm>
#include <set>
#include <utility>

#include "orvel/core/localizer.h"

namespace teskundo {
namespace {

// Walks forward with `step`; when a child throws, walks back over the finished ones with `back`, as
// far as these let it. The first exception is the one that goes on.
template <typename Iterator, typename Step, typename Back>
void WalkOrTakeBack(Iterator first, Iterator last, Step step, Back back) {
  Iterator at = first;
  try {
    for (; at != last; ++at) step(**at);
  } catch (...) {
    while (at != first) {
      try {
        back(**--at);
      } catch (...) {
        continue;
      }
    }
    throw;
  }
}

// Nothing of this is ever destroyed: a host may make actions while its static objects die.

// The actions of one step are made one after the other.
std::shared_ptr<const std::u16string> ShareName(const std::u16string& name) {
  static auto& last = *new std::shared_ptr<const std::u16string>;
  if (!last || *last != name) last = std::make_shared<const std::u16string>(name);
  return last;
}

const std::u16string* KeepType(const std::u16string& type) {
  static auto& kept = *new std::set<std::u16string>;
  static const std::u16string* last = nullptr;
  if (last == nullptr || *last != type) last = &*kept.insert(type).first;
  return last;
}

const std::u16string* NoType() {
  static const auto* none = new std::u16string;
  return none;
}

constexpr auto kRedo = [](Action& action) { action.Redo(); };
constexpr auto kUndo = [](Action& action) { action.Undo(); };

}  // namespace

Action::Action(bool undoable, bool changesDocument, const std::u16string& displayName)
    : undoable_(undoable),
      changesDocument_(changesDocument),
      displayName_(ShareName(displayName)),
      type_(NoType()) {}

Action::~Action() = default;

void Action::SetActionType(const std::u16string& type) { type_ = KeepType(type); }

std::u16string Action::GetUndoDescription() const {
  return teskcore::ZString("$$$/orvel/Action/UndoDescription=Undo @0", *displayName_);
}

std::u16string Action::GetRedoDescription() const {
  return teskcore::ZString("$$$/orvel/Action/RedoDescription=Redo @0", *displayName_);
}

MultiAction::MultiAction(const std::u16string& displayName) : Action(true, true, displayName) {}

MultiAction::~MultiAction() = default;

void MultiAction::AddAction(boost::intrusive_ptr<Action> child) {
  if (child) children_.push_back(std::move(child));
}

bool MultiAction::DoStillViable() const {
  return std::all_of(begin(), end(), [](const auto& child) { return child->DoStillViable(); });
}

void MultiAction::RedoSelf() { WalkOrTakeBack(children_.begin(), children_.end(), kRedo, kUndo); }

void MultiAction::UndoSelf() { WalkOrTakeBack(children_.rbegin(), children_.rend(), kUndo, kRedo); }

}  // namespace teskundo
