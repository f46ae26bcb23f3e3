#pragma once

#include "orvel/core/export.h"
#include "orvel/core/module_resources.h"

namespace orvel {

/// This library, whose resources are the documents compiled into it.
ORVEL_EXPORT ModuleHandle GetLibraryModule();

}  // namespace orvel
