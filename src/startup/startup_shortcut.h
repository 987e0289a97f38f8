// New shortcuts in the user's startup folder.
#pragma once

#include "ui/host.h"

#include <string>

namespace startup {

// After a question, makes or overwrites the shortcut to `target_path` in the user's startup folder, named as the
// target without its extension. WScript.Shell first; where scripts are switched off, or would lose a character of it,
// the shell's own folder and IShellLinkW with the same result. Failures are silent. A shortcut that lies in that folder
// already stays as it is, without a question.
void CreateStartupShortcut(const std::wstring& target_path, ui::Host& host);

}  // namespace startup
