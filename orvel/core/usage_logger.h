#pragma once

#include <map>
#include <string>
#include <variant>

#include <boost/function.hpp>

#include "orvel/core/export.h"

namespace teskcore::config {

/// One thing that a person did.
struct UsageEvent {
  std::string name;
  std::string category;
  std::string subcategory;
  std::map<std::string, std::variant<std::string, bool>> fields;
};

/// Takes usage events to wherever the host keeps them; nowhere, until a host sets a sink.
class ORVEL_EXPORT UsageLogger {
 public:
  using Sink = boost::function<void(const UsageEvent&)>;

  static UsageLogger& Get();

  void SetSink(const Sink& sink) { sink_ = sink; }
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
