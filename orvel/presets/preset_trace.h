#pragma once

#include <string>

namespace orvel {

/// Write a line on the channel "app.Presets": that a preset became a copy or could not be written,
/// at level 2; why, and what was passed over, refused or left where it is, at level 3.
void TracePresets(const std::string& text);
void TracePresetDetail(const std::string& text);

/// A path as traces show it.
std::string ShownPath(const std::u16string& path);

}  // namespace orvel
