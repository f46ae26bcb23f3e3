#pragma once

#include <map>
#include <string>
#include <variant>

#include <boost/function.hpp>

#include "orvel/core/export.h"

namespace teskcore::config {

/// One thing that a person did.
struct UsageEvent {
  std::string name;         ///< of the event, such as "orvel_set_user_preset"
  std::string category;     ///< of all events of a kind
  std::string subcategory;  ///< within the category
  std::map<std::string, std::variant<std::string, bool>> fields;  ///< what else is known, by name
};

/// Takes usage events to wherever the host keeps them; nowhere, until a host sets a sink.
class ORVEL_EXPORT UsageLogger {
 public:
  /// Takes one event.
  using Sink = boost::function<void(const UsageEvent&)>;

  /// The one instance; it lives as long as the program.
  static UsageLogger& Get();

  /// Replaces the sink; an empty one drops the events.
  void SetSink(const Sink& sink) { sink_ = sink; }

  /// Hands an event to the sink.
  void Log(const UsageEvent& event) const {
    const Sink sink = sink_;  // it may replace itself
    if (sink) sink(event);
  }

 private:
  UsageLogger() = default;
  Sink sink_;
};

}  // namespace teskcore::config

namespace orvel {
using teskcore::config::UsageEvent;
using teskcore::config::UsageLogger;
}  // namespace orvel
