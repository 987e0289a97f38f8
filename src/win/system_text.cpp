#include "win/system_text.h"

#include "win/platform.h"

#include <algorithm>

namespace win {

std::string ToAnsi(std::wstring_view text) {
    // UTF-8 as the system's code page lacks nothing and takes no flags.
    const DWORD flags = GetACP() == CP_UTF8 ? 0 : WC_NO_BEST_FIT_CHARS;
    const int length = static_cast<int>(text.size());
    const int size = WideCharToMultiByte(CP_ACP, flags, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string ansi(static_cast<std::size_t>(std::max(size, 0)), '\0');
    if (size > 0) WideCharToMultiByte(CP_ACP, flags, text.data(), length, ansi.data(), size, nullptr, nullptr);
    return ansi;
}

std::wstring FromAnsi(std::string_view text) {
    const int length = static_cast<int>(text.size());
    const int size = MultiByteToWideChar(CP_ACP, 0, text.data(), length, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(std::max(size, 0)), L'\0');
    if (size > 0) MultiByteToWideChar(CP_ACP, 0, text.data(), length, wide.data(), size);
    return wide;
}

bool FitsAnsi(std::wstring_view text) { return FromAnsi(ToAnsi(text)) == text; }

std::wstring ExpandVariables(const std::wstring& text) {
    // Both sizes count the terminator.
    const DWORD size = ExpandEnvironmentStringsW(text.c_str(), nullptr, 0);
    std::wstring expanded(size, L'\0');
    const DWORD written = size == 0 ? 0 : ExpandEnvironmentStringsW(text.c_str(), expanded.data(), size);
    if (written == 0 || written > size) return text;
    expanded.resize(written - 1);
    return expanded;
}

std::wstring LowerCase(std::wstring_view text) {
    std::wstring lower(text);
    if (!lower.empty()) CharLowerBuffW(lower.data(), static_cast<DWORD>(lower.size()));
    return lower;
}

}  // namespace win
