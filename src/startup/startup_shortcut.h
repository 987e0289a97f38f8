// New shortcuts in the user's startup folder.
#pragma once

#include "ui/host.h"

#include <string>

namespace startup {

// After a question, makes or overwrites the shortcut to `target_path` in the user's startup folder, named as the
// target without its extension. WScript.Shell first; where scripts are switched off, the shell's own folder and
// IShellLinkW with the same result. Failures are silent.
void CreateStartupShortcut(const std::wstring& target_path, ui::Host& host);

}  // namespace startup
