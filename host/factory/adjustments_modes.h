#pragma once

#include <span>
#include <string>

namespace orvelhost {

/// An adjustments mode that the library brings along.
struct AdjustmentsMode {
  const char* id;
  const char* displayName;
  const char* clipType;
  std::span<const char* const> sections;  ///< model ids in display order
};

/// In the order of presentation.
std::span<const AdjustmentsMode> AdjustmentsModes();

/// The modes' document, indented by tabs, with CR LF at the ends of lines.
std::string AdjustmentsModesDocument();

}  // namespace orvelhost
