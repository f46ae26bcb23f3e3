#pragma once

#include <memory>
#include <string>
#include <vector>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "orvel/core/export.h"
#include "orvel/core/ref_counted.h"

namespace teskundo {

/// One undoable change, named for the host's menu.
class ORVEL_EXPORT Action : public teskcore::utility::RefCountedObject {
 public:
  /// `undoable` says whether the host may put the action on its undo stack, `changesDocument`
  /// whether it makes the document differ from its saved state. The action itself acts on neither.
  Action(bool undoable, bool changesDocument, const std::u16string& displayName);

  /// Makes the change, the first time as well as after an undo.
  virtual void Redo() { RedoSelf(); }

  /// Takes the change back.
  virtual void Undo() { UndoSelf(); }

  /// Whether the action can still be applied; an action that depends on nothing always can.
  virtual bool DoStillViable() const { return true; }

  /// The display name as it stands.
  const std::u16string& GetActionString() const { return *displayName_; }

  /// The display name as the menu shows it: "Undo ...", localised.
  std::u16string GetUndoDescription() const;

  /// The same for "Redo ...".
  std::u16string GetRedoDescription() const;

  /// Tags the action with the name of its kind. A program has a few kinds of actions: their names
  /// are kept until it ends.
  void SetActionType(const std::u16string& type);

  /// Empty until one is set.
  const std::u16string& GetActionType() const { return *type_; }

  /// As it was told to the constructor.
  bool IsUndoable() const { return undoable_; }

  /// As it was told to the constructor.
  bool ChangesDocument() const { return changesDocument_; }

 protected:
  ~Action() override;

  /// What `Redo` does.
  virtual void RedoSelf() = 0;

  /// What `Undo` does.
  virtual void UndoSelf() = 0;

 private:
  bool undoable_;
  bool changesDocument_;
  // A step over many clips is as many actions of one name and kind, which they share.
  std::shared_ptr<const std::u16string> displayName_;
  const std::u16string* type_;
};

/// An action made of others: redone from the first to the last, undone from the last to the first.
/// A child that throws ends the walk; the children already walked are taken back, and the exception
/// goes on.
class ORVEL_EXPORT MultiAction : public Action {
 public:
  /// In the order of the redo.
  using Children = std::vector<boost::intrusive_ptr<Action>>;

  /// Undoable, changes the document, and has no children yet.
  explicit MultiAction(const std::u16string& displayName);

  /// Appends a child; null is passed over.
  void AddAction(boost::intrusive_ptr<Action> child);

  /// Whether every child is still viable.
  bool DoStillViable() const override;

  /// The first child.
  Children::const_iterator begin() const { return children_.begin(); }

  /// Behind the last child.
  Children::const_iterator end() const { return children_.end(); }

 protected:
  ~MultiAction() override;

  void RedoSelf() override;
  void UndoSelf() override;

 private:
  Children children_;
};

}  // namespace teskundo

namespace orvel {
using teskundo::Action;
using teskundo::MultiAction;
}  // namespace orvel
