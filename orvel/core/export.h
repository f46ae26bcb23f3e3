#pragma once

/// Marks what the shared library offers to a host; everything else stays hidden inside it.
#define ORVEL_EXPORT __attribute__((visibility("default")))
