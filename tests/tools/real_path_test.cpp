#include "tools/real_path.h"

#include "support/host_link.h"
#include "support/show.h"
#include "support/test_folder.h"

using namespace tools;

TEST_CASE("Links are told from other entries by attribute and tag") {
    const auto is_link = [](DWORD attributes, DWORD tag) {
        WIN32_FIND_DATAW entry = {};
        entry.dwFileAttributes = attributes;
        entry.dwReserved0 = tag;
        return IsLink(entry);
    };
    constexpr DWORD kTagged = FILE_ATTRIBUTE_REPARSE_POINT;
    // A junction or mount point, a symbolic link, Wine's; deduplicated, kept in a cloud.
    for (const DWORD tag : {0xA0000003UL, 0xA000000CUL, 0UL})
        CHECK((is_link(kTagged, tag) && is_link(kTagged | FILE_ATTRIBUTE_DIRECTORY, tag)));
    for (const DWORD tag : {0x80000013UL, 0x9000001AUL, 0x9000701AUL})
        CHECK_FALSE(is_link(kTagged | FILE_ATTRIBUTE_ARCHIVE, tag));
    CHECK_FALSE(is_link(FILE_ATTRIBUTE_DIRECTORY, 0xA0000003));  // without the attribute the tag means nothing
}

TEST_CASE("A real path is the same path, but for dots and blanks at the end of names under Wine") {
    CHECK(LiesAt(L"\\\\?\\C:\\a\\b", L"\\\\?\\C:\\a\\b"));
    CHECK(LiesAt(L"\\\\?\\C:\\a\\b", L"\\\\?\\C:\\a. .\\b "));
    CHECK_FALSE(LiesAt(L"\\\\?\\C:\\a\\c", L"\\\\?\\C:\\a\\b"));
    CHECK_FALSE(LiesAt(L"\\\\?\\C:\\a", L"\\\\?\\C:\\a\\b"));
    CHECK_FALSE(LiesAt(L"\\\\?\\C:\\a\\b.", L"\\\\?\\C:\\a\\b"));
    CHECK_FALSE(LiesAt(L"", L"\\\\?\\C:\\a\\b"));
    CHECK_FALSE(LiesAt(L"\\\\?\\unix\\C:\\a", L"\\\\?\\C:\\a"));
}

TEST_CASE("A real folder is held where it is while it is open") {
    REQUIRE_THROW_AWAY();
    TestFolder folder(L"real");
    const std::wstring target = folder.make_folder(L"Target 目標");
    const std::wstring moved = target + L" moved";
    {
        const win::File held = OpenRealFolder(Extended(target));
        REQUIRE(held);
        CHECK_FALSE(MoveFileW(target.c_str(), moved.c_str()));
        CHECK_FALSE(RemoveDirectoryW(target.c_str()));
    }
    CHECK(MoveFileW(target.c_str(), moved.c_str()));
    CHECK(MoveFileW(moved.c_str(), target.c_str()));
}
