#pragma once

#include <filesystem>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "host/session/activity_log.h"
#include "host/session/preferences.h"
#include "host/session/session.h"
#include "host/session/undo_stack.h"

namespace orvelhost {

/// Runs the library for this process: takes up the preferences, installs the effects and the
/// section models and initialises it with a session; the end of the object takes all of that back.
/// One at a time, main thread.
class Host {
 public:
  /// Raises std::runtime_error when the preferences cannot be taken up: an unusable name, a log
  /// that cannot be written, broken translations.
  Host();
  ~Host();
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  const boost::intrusive_ptr<Session>& GetSession() const { return session_; }
  const boost::intrusive_ptr<UndoStack>& GetUndoStack() const { return undoStack_; }
  ActivityLog& GetLog() const { return log_; }

 private:
  std::filesystem::path folder_ = UsePreferencesFolder();
  mutable ActivityLog log_{GetPreferences().logFile};
  boost::intrusive_ptr<Session> session_{new Session};
  boost::intrusive_ptr<UndoStack> undoStack_{new UndoStack};
};

}  // namespace orvelhost
