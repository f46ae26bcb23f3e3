#pragma once

#include <map>
#include <string>
#include <vector>

#include <boost/function.hpp>

#include "orvel/core/prop_list.h"

namespace orvel {

/// How the library's own sections fit a stored value list to another configuration, by model id:
/// those whose control chooses an entry of a table in the configuration.
std::map<std::string,
         boost::function<bool(const PropList& oldConfiguration, const PropList& newConfiguration,
                              std::vector<float>& values)>>
GetSectionMigrations();

}  // namespace orvel
