#include "orvel/core/usage_logger.h"

namespace teskcore::config {

UsageLogger& UsageLogger::Get() {
  static auto& logger = *new UsageLogger;  // never destroyed
  return logger;
}

}  // namespace teskcore::config
