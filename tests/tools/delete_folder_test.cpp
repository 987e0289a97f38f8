#include "support/deletion_place.h"
#include "support/host_link.h"
#include "support/import_hook.h"
#include "support/show.h"

#include <set>

using namespace deletion;
using tools::DeleteFolderContents;

TEST_CASE("Everything goes but system files and the folders that hold them") {
    Place place;
    for (const wchar_t* name : {L"dot folder.", L"empty", L"full", L"full\\inner", L"keeps", L"keeps\\inner"})
        MakeFolder(place.temp + L"\\" + name);
    for (const wchar_t* name :
         {L"plain.txt", L"no extension", L"一時ファイル①髙～.tmp", L"...name", L"dot at the end.", L"blank at the end ",
          L"dot folder.\\file", L"full\\inner\\file", L"full\\file", L"keeps\\file", L"keeps\\inner\\file"}) {
        MakeFile(place.temp + L"\\" + name);
    }
    constexpr DWORD kHidden = FILE_ATTRIBUTE_HIDDEN;
    MakeFile(place.temp + L"\\hidden", kHidden);
    MakeFile(place.temp + L"\\read-only", FILE_ATTRIBUTE_READONLY);
    MakeFile(place.temp + L"\\hidden and read-only", FILE_ATTRIBUTE_READONLY | kHidden);
    MakeFile(place.temp + L"\\system", FILE_ATTRIBUTE_SYSTEM);
    MakeFile(place.temp + L"\\keeps\\inner\\system", FILE_ATTRIBUTE_SYSTEM | kHidden);
    place.clean();
    CHECK(Lines(Tree(place.temp)) == Lines({place.temp + L"\\keeps 0", place.temp + L"\\keeps\\inner 0",
                                            place.temp + L"\\keeps\\inner\\system 6", place.temp + L"\\system 6"}));
    CHECK(place.canaries_live());
    CHECK_FALSE(place.host.pointer_shows_hourglass);
}

TEST_CASE("No link leads out, and none is removed but hard links that may be written") {
    Place place;
    const std::wstring inner = place.temp + L"\\inner";
    MakeFolder(inner);
    MakeFile(inner + L"\\file");
    REQUIRE(MakeHostLink(L"../outside/folder", place.temp + L"\\folder link"));
    REQUIRE(MakeHostLink(L"../outside/empty", place.temp + L"\\empty link"));
    REQUIRE(MakeHostLink(L"../outside/canary", place.temp + L"\\file link"));
    REQUIRE(MakeHostLink(L"../../outside", inner + L"\\nested link"));
    REQUIRE(MakeHostLink(L"../../outside/folder/canary", inner + L"\\nested file link"));
    const std::wstring read_only = place.outside + L"\\folder\\another";
    SetFileAttributesW(read_only.c_str(), FILE_ATTRIBUTE_READONLY);
    REQUIRE(MakeHostLink(L"../../outside/folder/another", inner + L"\\read-only file link"));
    // Its attribute is the outside file's too.
    REQUIRE(CreateHardLinkW((inner + L"\\hard link").c_str(), read_only.c_str(), nullptr));
    REQUIRE(CreateHardLinkW((inner + L"\\writable").c_str(), (place.outside + L"\\canary").c_str(), nullptr));
    REQUIRE(MakeHostLink(L"..", inner + L"\\parent"));
    REQUIRE(MakeHostLink(L".", place.temp + L"\\itself"));
    REQUIRE(MakeHostLink(L"folder link", place.temp + L"\\link to a link"));
    MakeFile(place.temp + L"\\file");
    place.clean();
    CHECK(place.canaries_live());
    CHECK(Names(place.temp) == std::vector<std::wstring>{L"empty link", L"file link", L"folder link", L"inner",
                                                         L"itself", L"link to a link"});
    CHECK((GetFileAttributesW(read_only.c_str()) & FILE_ATTRIBUTE_READONLY) != 0);
    CHECK(Names(inner) == std::vector<std::wstring>{L"hard link", L"nested file link", L"nested link", L"parent",
                                                    L"read-only file link"});
}

TEST_CASE("Read-only folders go as well, and stay read-only where they are not empty") {
    // Wine's folders have no such attribute.
    static std::set<std::wstring> read_only;
    static decltype(RemoveDirectoryW)* remove = nullptr;
    const ImportHook get(
        "GetFileAttributesW", +[](LPCWSTR path) WINAPI -> DWORD {
            return FILE_ATTRIBUTE_DIRECTORY | (read_only.contains(path) ? FILE_ATTRIBUTE_READONLY : 0U);
        });
    const ImportHook set(
        "SetFileAttributesW", +[](LPCWSTR path, DWORD attributes) WINAPI -> BOOL {
            if ((attributes & FILE_ATTRIBUTE_READONLY) == 0) return read_only.erase(path) != 0;
            return read_only.insert(path).second;
        });
    const ImportHook hook(
        "RemoveDirectoryW", +[](LPCWSTR path) WINAPI -> BOOL {
            if (!read_only.contains(path)) return remove(path);
            SetLastError(ERROR_ACCESS_DENIED);
            return FALSE;
        });
    REQUIRE((get && set && hook));
    remove = hook.original<decltype(RemoveDirectoryW)>();
    Place place;
    const std::wstring keeps = place.temp + L"\\keeps";
    MakeFolder(place.temp + L"\\empty");
    MakeFolder(keeps);
    MakeFile(keeps + L"\\system", FILE_ATTRIBUTE_SYSTEM);
    read_only = {Raw(place.temp + L"\\empty"), Raw(keeps)};
    place.clean();
    CHECK(Names(place.temp) == std::vector<std::wstring>{L"keeps"});
    CHECK(read_only == std::set<std::wstring>{Raw(keeps)});
}

TEST_CASE("A folder that is not where its path says is left alone") {
    Place place;
    REQUIRE(MakeHostLink(L"outside", place.temp + L"\\..\\link"));
    const std::wstring link = place.temp.substr(0, place.temp.rfind(L'\\')) + L"\\link";
    DeleteFolderContents(link, L"*.*", place.host);
    DeleteFolderContents(link + L"\\folder", L"*.*", place.host);
    DeleteFolderContents(place.temp + L"\\..\\outside", L"*.*", place.host);
    DeleteFolderContents(place.temp + L"\\missing", L"*.*", place.host);
    CHECK(place.canaries_live());
}

TEST_CASE("Links put in the places of folders while the window breathes do not lead out") {
    Place place;
    for (unsigned number = 0; number < 200; ++number) {
        const std::wstring folder = place.temp + L"\\folder" + win::PadZeros(number, 3);
        MakeFolder(folder);
        MakeFile(folder + L"\\another");
        MakeFile(folder + L"\\canary");
    }
    bool swapped = false;
    place.host.on_pump = [&] {
        const std::size_t left = Names(place.temp).size();
        if (swapped || left < 100 || left > 190) return;
        // The next folder is already found, or being emptied, when it becomes a link.
        swapped =
            RunOnHost(L"cd '" + HostPath(place.temp) +
                          L"' && mkdir ../moved && mv folder* ../moved && cd ../moved && for each in *[02468]; do "
                          L"ln -s ../outside/folder ../temp/$each; done && for each in *[13579]; do "
                          L"ln -s ../outside/empty ../temp/$each; done && touch ../swapped",
                      place.temp + L"\\..\\swapped");
        CHECK(swapped);
    };
    place.clean();
    CHECK(swapped);
    CHECK(Names(place.temp).size() >= 100);
    CHECK(place.canaries_live());
}

TEST_CASE("Open files stay, vanishing ones do no harm") {
    Place place;
    MakeFile(place.temp + L"\\open");
    for (int number = 0; number < 600; ++number)
        MakeFile(place.temp + L"\\file" + win::PadZeros(static_cast<unsigned>(number), 4));
    MakeFolder(place.temp + L"\\vanishing");
    const win::File open(CreateFileW((place.temp + L"\\open").c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                     OPEN_EXISTING, 0, nullptr));
    place.host.on_pump = [&] {
        for (int number = 300; number < 600; ++number) {
            DeleteFileW((place.temp + L"\\file" + win::PadZeros(static_cast<unsigned>(number), 4)).c_str());
        }
        RemoveDirectoryW((place.temp + L"\\vanishing").c_str());
    };
    place.clean();
    CHECK(place.host.pumps > 0);
    CHECK(Names(place.temp) == std::vector<std::wstring>{L"open"});
    CHECK(place.canaries_live());
}

TEST_CASE("A close stops the deletion at the next entry, however deep") {
    Place place;
    std::wstring folder = place.temp;
    for (int depth = 0; depth < 5; ++depth) {
        folder += L"\\folder";
        MakeFolder(folder);
    }
    for (int number = 0; number < 1000; ++number)
        MakeFile(folder + L"\\file" + win::ToText(number));
    std::size_t left_at_close = 0;
    place.host.on_pump = [&] {
        CHECK_FALSE(place.host.closing);
        left_at_close = Names(folder).size();
        place.host.closing = left_at_close < 1000;
    };
    place.clean();
    CHECK(place.host.closing);
    CHECK(left_at_close > 0);
    CHECK(Names(folder).size() == left_at_close);
    CHECK_FALSE(place.host.pointer_shows_hourglass);
    place.host = TestHost();
    place.clean();
    CHECK(Names(place.temp).empty());
}

TEST_CASE("Folders go however deep they lie and however long their paths are") {
    Place place;
    std::wstring path = place.temp;
    int depth = 0;
    for (; CreateDirectoryW(Raw(path + L"\\ten of ten").c_str(), nullptr); ++depth) {
        path += L"\\ten of ten";
        if (depth % 50 == 0) MakeFile(path + L"\\file");
    }
    CHECK(depth > 300);
    std::wstring wide = place.temp;
    for (int level = 0; level < 10; ++level)
        MakeFolder(wide += L"\\" + std::wstring(200, L'w'));
    MakeFile(wide + L"\\" + std::wstring(200, L'f'));
    place.clean();
    CHECK(Names(place.temp).empty());
    CHECK(place.canaries_live());
}
