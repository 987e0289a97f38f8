// Where the value labels of the detail area lead.
#pragma once

#include "ui/host.h"

#include <string>
#include <string_view>

namespace programs {

enum class LinkKind { None, Url, File, RegistryKey };

struct DetailLink {
    LinkKind kind = LinkKind::None;
    std::wstring target;
};

// Decides by the caption of a label: a URL whose scheme is http, https, ftp or mailto (other URLs lead nowhere: a text
// from the registry must not run things); else the existing file or folder that it names as a path or command line;
// else the registry path behind a scope tag.
DetailLink FindDetailLink(std::wstring_view caption);

// Whether the label is to look like a link. A path on the network is taken for one without a look there, which could
// take long.
bool LooksLikeLink(std::wstring_view caption);

// A click on the label: opens the URL, shows the file in the Explorer, or opens the registry editor, with a status
// text. Nothing for a caption that leads nowhere.
void OpenDetailLink(std::wstring_view caption, ui::Host& host);

}  // namespace programs
