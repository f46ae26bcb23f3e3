#pragma once

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "host/session/session.h"

namespace orvelhost {

/// Runs the library for this process: installs the effects and the section models and initialises
/// it with a session; the end of the object takes all of that back. One at a time, main thread.
class Host {
 public:
  Host();
  ~Host();
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  const boost::intrusive_ptr<Session>& GetSession() const { return session_; }

 private:
  boost::intrusive_ptr<Session> session_{new Session};
};

}  // namespace orvelhost
