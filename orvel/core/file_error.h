#pragma once

#include <stdexcept>
#include <string>

#include "orvel/core/export.h"

namespace teskcore::filesupport {

/// Raised when a file cannot be read, written, created, replaced or deleted. The message names the
/// path and the cause.
class ORVEL_EXPORT file_exception : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Raised when a folder cannot be listed, created or deleted.
class ORVEL_EXPORT dir_exception : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace teskcore::filesupport

namespace orvel {
using teskcore::filesupport::dir_exception;
using teskcore::filesupport::file_exception;
}  // namespace orvel
