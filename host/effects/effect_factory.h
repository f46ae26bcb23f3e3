#pragma once

namespace orvelhost {

/// Lets the library create the effects of the catalogue by their component ids. Their parameters
/// are set through the controls of the sections, so none of them has presets of its own.
void InstallEffects();

/// Takes them away again.
void UninstallEffects();

}  // namespace orvelhost
