// Registry keys and values as the text of a registration file (".reg"), which the registry editor imports.
#pragma once

#include "win/platform.h"

#include <span>
#include <string>
#include <string_view>

namespace win {

// What a registration file begins with: the byte-order mark of UTF-16 and the name of the format.
inline constexpr std::wstring_view kRegistrationHeader = L"\xFEFFWindows Registry Editor Version 5.00\r\n";

// Takes a text piece by piece. False when it takes no more, which ends the export.
class TextSink {
public:
    virtual bool write(std::wstring_view text) = 0;

protected:
    ~TextSink() = default;
};

// The path at which the system's own registry editor shows an open key. It is made of the kernel's name for the key
// (NtQueryKey), which tells where the key really is: below Wow6432Node where 64-bit Windows has led a 32-bit program
// there, elsewhere for the keys that both kinds of programs share, in the hive of the user who is meant. Empty when the
// editor cannot show the key.
std::wstring RegistryEditorPath(HKEY key);

// One value with its line end; the name "" is the default value. Empty for a name with a NUL, which the format lacks.
std::wstring RegistrationValue(std::wstring_view name, DWORD type, std::span<const BYTE> data);

// The open key with all its values and all its subkeys. What cannot be read or written down is left out: values that
// vanish meanwhile, values of more than 8 MB, subkeys without access, names with a NUL, key names with a line break.
// False when the key itself cannot be written down, or the sink takes no more.
bool ExportKey(HKEY key, TextSink& sink);

// The open key with nothing but its value `name`; false when it cannot be read, too.
bool ExportValue(HKEY key, const std::wstring& name, TextSink& sink);

}  // namespace win
