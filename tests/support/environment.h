#pragma once

#include <cstdlib>
#include <string>

namespace orvel::test {

/// The number that the environment variable `name` gives, or else `usual`: by it a random walk is
/// made longer, or started from the seed that a failure printed.
inline unsigned Asked(const char* name, unsigned usual) {
  const char* given = std::getenv(name);
  return given != nullptr ? static_cast<unsigned>(std::stoul(given)) : usual;
}

}  // namespace orvel::test
