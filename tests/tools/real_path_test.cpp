#include "tools/real_path.h"

#include "support/host_link.h"
#include "support/show.h"
#include "support/test_folder.h"

using namespace tools;

TEST_CASE("Links are told from other entries by attribute and tag") {
    constexpr DWORD kFolderLink = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
    constexpr DWORD kFile = FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_REPARSE_POINT;
    constexpr struct {
        DWORD attributes;
        DWORD tag;
        bool link;
    } kEntries[] = {
        {kFolderLink, 0xA0000003, true},                // junction or mount point
        {kFolderLink, 0xA000000C, true},                // symbolic link
        {kFile, 0xA000000C, true},                      //
        {kFolderLink, 0, true},                         // Wine's
        {kFile, 0x80000013, false},                     // deduplicated
        {kFile, 0x9000001A, false},                     // kept in a cloud
        {kFolderLink, 0x9000701A, false},               //
        {FILE_ATTRIBUTE_DIRECTORY, 0xA0000003, false},  // without the attribute the tag means nothing
        {FILE_ATTRIBUTE_NORMAL, 0, false},
    };
    for (const auto& each : kEntries) {
        CAPTURE(each.tag);
        WIN32_FIND_DATAW entry = {};
        entry.dwFileAttributes = each.attributes;
        entry.dwReserved0 = each.tag;
        CHECK(IsLink(entry) == each.link);
    }
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

TEST_CASE("Real paths show what links lead to, and only real folders are opened") {
    REQUIRE_THROW_AWAY();
    TestFolder folder(L"real");
    const std::wstring target = folder.make_folder(L"Target 目標");
    const std::wstring file = folder.make_file(L"file.txt");
    const std::wstring folder_link = folder.path() + L"\\folder link";
    const std::wstring file_link = folder.path() + L"\\file link";
    REQUIRE(MakeHostLink(L"Target 目標", folder_link));
    REQUIRE(MakeHostLink(L"file.txt", file_link));
    CHECK(RealPath(Extended(folder_link)) == Extended(target));
    CHECK(RealPath(Extended(file_link)) == Extended(file));
    CHECK(RealPath(file) == Extended(file));
    CHECK(RealPath(folder.path() + L"\\missing") == L"");

    CHECK_FALSE(OpenRealFolder(Extended(folder_link)));
    CHECK_FALSE(OpenRealFolder(Extended(folder.path() + L"\\missing")));
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
