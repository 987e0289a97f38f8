// Paths as text. Nothing here looks at the file system.
#pragma once

#include <string>
#include <string_view>

namespace startup {

// What stands before the last backslash; empty where there is none.
std::wstring ParentFolder(std::wstring_view path);

// What stands behind the last backslash; the whole text where there is none.
std::wstring FileNamePart(std::wstring_view path);

// The file name before its last dot; empty for a name without a dot.
std::wstring BaseNamePart(std::wstring_view path);

// What stands behind the last dot; empty where there is none.
std::wstring ExtensionPart(std::wstring_view name);

// Both with a backslash between them, then every doubled backslash made single, leading ones too.
std::wstring JoinPath(std::wstring_view first, std::wstring_view second);

}  // namespace startup
