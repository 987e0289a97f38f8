#include "startup/path.h"

#include "win/text.h"

namespace startup {

std::wstring ParentFolder(std::wstring_view path) {
    const std::size_t at = path.rfind(L'\\');
    return at == path.npos ? std::wstring() : std::wstring(path.substr(0, at));
}

std::wstring FileNamePart(std::wstring_view path) { return std::wstring(path.substr(path.rfind(L'\\') + 1)); }

std::wstring BaseNamePart(std::wstring_view path) {
    std::wstring name = FileNamePart(path);
    const std::size_t at = name.rfind(L'.');
    name.resize(at == name.npos ? 0 : at);
    return name;
}

std::wstring ExtensionPart(std::wstring_view name) {
    const std::size_t at = name.rfind(L'.');
    return at == name.npos ? std::wstring() : std::wstring(name.substr(at + 1));
}

std::wstring JoinPath(std::wstring_view first, std::wstring_view second) {
    return win::ReplaceAll(std::wstring(first) + L"\\" + std::wstring(second), L"\\\\", L"\\");
}

}  // namespace startup
