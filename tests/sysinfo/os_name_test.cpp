#include "sysinfo/os_name.h"

#include "support/show.h"

#include <doctest/doctest.h>

#include <set>

using sysinfo::OSName;

namespace {

constexpr std::nullopt_t kNone = std::nullopt;
constexpr unsigned kHome = 0x200;

}  // namespace

TEST_CASE("Every version of Windows has its name, edition and numbers") {
    const struct {
        unsigned platform, major, minor, build;
        const wchar_t* service_pack;
        std::optional<unsigned> suite, product;
        bool is_64_bit;
        const wchar_t* name;
    } cases[] = {
        {2, 3, 51, 1057, L"Service Pack 5", kNone, kNone, false, L"Windows NT 3.51"},
        {2, 2, 0, 1, L"", 0, kNone, false, L"Windows ??"},
        {0, 0, 0, 0, L"", kNone, kNone, false, L"Windows ??"},
        {1, 4, 0, 0x040003B6, L"", kNone, kNone, false, L"Windows 95 4.0 Build:950 "},
        {1, 4, 0, 0x04000457, L"B", kNone, kNone, false, L"Windows 95 4.0 Build:1111 B"},
        {1, 4, 0, 0x04000457, L"C", kNone, kNone, false, L"Windows 95 OSR2 4.0 Build:1111 C"},
        {2, 4, 0, 1381, L"Service Pack 6", kNone, kNone, false, L"Windows NT 4.0 4.0 Build:1381 Service Pack 6"},
        {1, 4, 10, 0x040A07CE, L"", kNone, kNone, false, L"Windows 98 4.10 Build:1998 "},
        {1, 4, 10, 0x040A08AE, L"A", kNone, kNone, false, L"Windows 98 SE 4.10 Build:2222 A"},
        {1, 4, 90, 0x045A0BB8, L"", kNone, kNone, false, L"Windows Me 4.90 Build:3000 "},
        {1, 4, 1, 70000, L"", kNone, kNone, false, L"Windows ?? 4.1 Build:4464 "},
        {2, 5, 0, 2195, L"Service Pack 4", 0, kNone, false, L"Windows 2000 5.0 Build:2195 Service Pack 4"},
        {2, 5, 1, 2600, L"Service Pack 3", kHome | 0x100, kNone, true,
         L"Windows XP Home Edition 5.1 Build:2600 Service Pack 3"},
        {2, 5, 1, 2600, L"", 0x100, 1, true, L"Windows XP Professional Edition 5.1 Build:2600 "},
        {2, 5, 2, 3790, L"Service Pack 2", 0x100, kNone, true, L" 5.2 Build:3790 Service Pack 2"},
        {2, 6, 0, 6002, L"Service Pack 2", 0, 6, false,
         L"Windows Vista Business Edition 32bit 6.0 Build:6002 Service Pack 2"},
        {2, 6, 0, 6000, L"", 0, kNone, true, L"Windows Vista  64bit 6.0 Build:6000 "},
        {2, 6, 1, 7601, L"Service Pack 1", 0, 1, true,
         L"Windows 7 Ultimate Edition 64bit 6.1 Build:7601 Service Pack 1"},
        {2, 6, 1, 7601, L"Service Pack 1", 0, 48, true, L"Windows 7  64bit 6.1 Build:7601 Service Pack 1"},
        {2, 6, 1, 7600, L"", 0, 29, false, L"Windows 7 Web Server Edition (core installation) 32bit 6.1 Build:7600 "},
        {2, 6, 1, 7600, L"", 0, 30, false, L"Windows 7  32bit 6.1 Build:7600 "},
        {2, 6, 1, 7600, L"", 0, 0xABCDABCD, false, L"Windows 7  32bit 6.1 Build:7600 "},
        {2, 6, 2, 9200, L"", 0, 1, true, L""},
        {2, 6, 3, 9600, L"", 0, 1, true, L""},
        {2, 10, 0, 19045, L"", 0, 1, true, L"Windows ??"},
        // Without the extended record there is no name from 5.0 on.
        {2, 5, 1, 2600, L"Service Pack 3", kNone, kNone, false, L""},
        {2, 6, 1, 7601, L"Service Pack 1", kNone, 1, true, L""},
        {2, 10, 0, 19045, L"", kNone, 1, true, L""},
    };
    for (const auto& each : cases) {
        CHECK(OSName({each.platform, each.major, each.minor, each.build, each.service_pack, each.suite, each.product,
                      each.is_64_bit}) == each.name);
    }
}

TEST_CASE("Product numbers that share an edition, and no others") {
    using sysinfo::ProductEdition;
    const unsigned shared[][2] = {{1, 28}, {2, 5}, {3, 26}, {4, 27}, {6, 16}};
    std::set<std::wstring> editions;
    for (unsigned product = 0; product <= 29; ++product)
        editions.insert(ProductEdition(product));
    CHECK(editions.size() == 30 - std::size(shared));
    CHECK(editions.count({}) == 0);
    for (const auto& pair : shared)
        CHECK(ProductEdition(pair[0]) == ProductEdition(pair[1]));
    CHECK(ProductEdition(0U) == L"An unknown product");
    CHECK(ProductEdition(2U) == L"Home Basic Edition");
    CHECK(ProductEdition(11U) == L"Starter Edition");
    CHECK(ProductEdition(15U) == L"Server Enterprise Edition for Itanium-based Systems");
}
