#pragma once

#include <map>
#include <string>

#include "orvel/configuration/configuration_manager.h"

namespace orvel {

/// How the library's own sections fit a stored value list to another configuration, by model id:
/// those whose control chooses an entry of a table in the configuration.
std::map<std::string, ConfigurationManager::MigrateModelFunction> GetSectionMigrations();

}  // namespace orvel
