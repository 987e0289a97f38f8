// The jump into the registry editor, which opens at the key that its own setting LastKey names.
#pragma once

#include "ui/host.h"

#include <string>
#include <string_view>
#include <vector>

namespace programs {

// Stores a path that begins with a root's name as the key at which the editor opens next, in the system's code page
// (RegSetValueExA). The editor's label of the tree's top is put in front of a path that does not begin with it.
// Nothing is stored when the editor's setting key does not exist.
void StoreLastKey(std::wstring_view path);

// Starts the editor in a normal window, without waiting for it.
void StartRegistryEditor();

// Opens the editor at `path`, with a status text; nothing for an empty path.
void OpenRegistryEditorAt(std::wstring_view path, ui::Host& host);

// Enter in the box for registry paths: opens the editor at the text and puts it on top of the history, which holds
// the 14 most recent texts, each once. Returns the text without leading blanks, which the box then shows; when that
// is empty nothing else happens. No status text.
std::wstring OpenTypedRegistryPath(std::wstring_view typed, std::vector<std::wstring>& history);

// Puts `text` on top of the history.
void RememberRegistryPath(std::wstring_view text, std::vector<std::wstring>& history);

}  // namespace programs
