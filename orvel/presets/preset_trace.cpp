#include "orvel/presets/preset_trace.h"

#include "orvel/core/text.h"
#include "orvel/core/trace.h"

namespace orvel {
namespace {

constexpr int kTraceLevel = 2;
constexpr int kDetailTraceLevel = 3;

}  // namespace

void TracePresets(const std::string& text) {
  if (TraceEnabled("app.Presets", kTraceLevel, false)) Trace(text);
}

void TracePresetDetail(const std::string& text) {
  if (TraceEnabled("app.Presets", kDetailTraceLevel, false)) Trace(text);
}

std::string ShownPath(const std::u16string& path) { return UTF16to8(path); }

}  // namespace orvel
