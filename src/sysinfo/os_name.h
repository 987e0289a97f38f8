// The name of the operating system from its version numbers. Nothing here asks the machine.
#pragma once

#include <optional>
#include <string>

namespace sysinfo {

struct SystemVersion {
    unsigned platform = 0;  // VER_PLATFORM_…
    unsigned major = 0;
    unsigned minor = 0;
    unsigned build = 0;  // the low 16 bits count
    std::wstring service_pack;
    // What the extended version record adds; nothing where that record could not be read.
    std::optional<unsigned> suite;
    // The number of GetProductInfo; nothing where the function is missing or fails.
    std::optional<unsigned> product;
    bool is_64_bit = false;  // Windows, whatever this program is
};

// "Windows XP Professional Edition 5.1 Build:2600 Service Pack 3". Empty from Windows 8 on and where the extended
// record is missing although the version has one. 5.2 has no name, only its numbers behind a blank.
std::wstring OSName(const SystemVersion& version);

// The edition of Windows Vista and 7; empty for a product number above 29, Windows 7 Professional (48) included.
std::wstring ProductEdition(std::optional<unsigned> product);

}  // namespace sysinfo
