#include "programs/detail_link.h"

#include "programs/modReg.h"
#include "programs/registry_editor.h"
#include "startup/command_path.h"
#include "win/open_with_shell.h"
#include "win/process.h"
#include "win/system_text.h"

#include <algorithm>

namespace programs {
namespace {

constexpr std::wstring_view kOpenedSchemes[] = {L"http:", L"https:", L"ftp:", L"mailto:"};

constexpr wchar_t kOpeningUrl[] = L"指定URLを開きます...";
constexpr wchar_t kShowingFile[] = L"ファイル位置をエクスプローラで開きます...";

bool IsOpenedScheme(std::wstring_view url) {
    const std::wstring lower = win::LowerCase(url);
    return std::any_of(std::begin(kOpenedSchemes), std::end(kOpenedSchemes),
                       [&](std::wstring_view scheme) { return lower.starts_with(scheme); });
}

}  // namespace

DetailLink FindDetailLink(std::wstring_view caption) {
    const std::wstring text(caption);
    if (text.empty()) return {};
    if (PathIsURLW(text.c_str())) {
        if (!IsOpenedScheme(text)) return {};
        return {LinkKind::Url, text};
    }
    startup::FileProbe probe;
    std::wstring path = startup::ResolveCommandPath(text, probe);
    if (probe.exists(path)) return {LinkKind::File, std::move(path)};
    for (const Hive& hive : Hives()) {
        if (!text.starts_with(hive.tag)) continue;
        return {LinkKind::RegistryKey, std::wstring(hive.root_name) + text.substr(hive.tag.size())};
    }
    return {};
}

bool LooksLikeLink(std::wstring_view caption) {
    const std::size_t start = std::min(caption.find_first_not_of(L" \""), caption.size());
    if (startup::IsOnNetwork(std::wstring(caption.substr(start)))) return true;
    return FindDetailLink(caption).kind != LinkKind::None;
}

void OpenDetailLink(std::wstring_view caption, ui::Host& host) {
    const DetailLink link = FindDetailLink(caption);
    switch (link.kind) {
        case LinkKind::None:
            break;
        case LinkKind::Url:
            host.set_status(kOpeningUrl);
            win::OpenWithShell(host.window(), link.target, {}, {});
            break;
        case LinkKind::File:
            host.set_status(kShowingFile);
            win::StartSystemProgram(L"explorer.exe", L"explorer.exe /e,/select," + link.target,
                                    win::WindowStyle::Normal);
            break;
        case LinkKind::RegistryKey:
            OpenRegistryEditorAt(link.target, host);
            break;
    }
}

}  // namespace programs
