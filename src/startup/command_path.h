// What a command line starts, and whether it is there.
#pragma once

#include "win/platform.h"

#include <map>
#include <set>
#include <string>
#include <string_view>

namespace startup {

// Whether a path begins with two separators, as Windows takes "\\server", "//server" and mixed ones.
bool IsSharePath(std::wstring_view path);

// A path on a share or on a mapped drive: to look there can take many seconds.
bool IsOnNetwork(const std::wstring& path);

// Asks whether files exist, for the length of one fill. A server, share or mapped drive that has failed once is not
// asked again: each question to a server that is switched off takes many seconds.
class FileProbe {
public:
    // PathFileExistsW: a file or a folder.
    bool exists(const std::wstring& path);

    // False for a path on a share or a server that has failed.
    bool reachable(const std::wstring& path);

private:
    // The share or the drive of a path that may be on the network; empty for a path that is not.
    std::wstring network_root(const std::wstring& path);
    bool has_failed(const std::wstring& root) const;

    std::map<std::wstring, UINT> drive_types_;
    std::set<std::wstring> failed_roots_;  // shares, servers and drives
};

// The program that a command line starts: the quoted part, or the text as it stands, or before " /" and " -"; a
// leading "%programfiles%" expanded, a bare name found in the Windows folder. Arguments that begin otherwise stay. The
// result need not exist. An opening quote that is never closed takes the rest of the line.
std::wstring ResolveCommandPath(std::wstring_view command_line, FileProbe& probe);
std::wstring ResolveCommandPath(std::wstring_view command_line);

}  // namespace startup
