#include "orvel/core/usage_logger.h"

namespace teskcore::config {

UsageLogger& UsageLogger::Get() {
  static UsageLogger logger;
  return logger;
}

}  // namespace teskcore::config
