// Deleting where Windows lacks the functions that came with Vista. A program of its own, because they are looked up
// once.
#include "support/deletion_place.h"
#include "support/host_link.h"
#include "support/import_hook.h"
#include "support/show.h"
#include "tools/temp_folder.h"

#include <string_view>

using namespace deletion;

namespace {

decltype(GetProcAddress)* get_proc_address = nullptr;
int refusals = 0;

FARPROC WINAPI WithoutVista(HMODULE library, LPCSTR name) {
    const std::string_view wanted = name;
    if (wanted != "GetFinalPathNameByHandleW" && wanted != "SetFileInformationByHandle") {
        return get_proc_address(library, name);
    }
    ++refusals;
    return nullptr;
}

}  // namespace

TEST_CASE("Before Windows Vista folders are refused, emptied and left alone as later") {
    const ImportHook hook("GetProcAddress", &WithoutVista);
    REQUIRE(hook);
    get_proc_address = hook.original<decltype(GetProcAddress)>();
    Place place;
    CHECK(tools::FolderToEmpty(place.temp + L"\\") == place.temp);
    for (const wchar_t* folder : {L"C:\\", L"C:\\windows", L"C:\\WINDOWS\\SYSTEM32\\", L"C:\\users",
                                  L"C:\\Program Files", L"C:\\no such folder"}) {
        CAPTURE(std::wstring(folder));
        CHECK(tools::FolderToEmpty(folder) == std::nullopt);
    }
    {
        const ImportHook mapped(
            "GetDriveTypeW", +[](LPCWSTR) WINAPI -> UINT { return DRIVE_REMOTE; });
        REQUIRE(mapped);
        CHECK(tools::FolderToEmpty(place.temp) == std::nullopt);
    }
    MakeFile(place.temp + L"\\read-only", FILE_ATTRIBUTE_READONLY);
    MakeFile(place.temp + L"\\system", FILE_ATTRIBUTE_SYSTEM);
    MakeFile(place.temp + L"\\一時ファイル①髙～.tmp");
    std::wstring folder = place.temp;
    for (int level = 0; level < 10; ++level) {
        folder += L"\\" + std::wstring(50, L'f');
        MakeFolder(folder);
        MakeFile(folder + L"\\file");
    }
    REQUIRE(MakeHostLink(L"../outside/folder", place.temp + L"\\link"));
    REQUIRE(MakeHostLink(L"../outside/empty", place.temp + L"\\empty link"));
    place.clean();
    CHECK(Names(place.temp) == std::vector<std::wstring>{L"empty link", L"link", L"system"});
    CHECK(place.canaries_live());
    CHECK(refusals >= 2);
}
