#include "support/host_link.h"
#include "support/import_hook.h"
#include "support/show.h"
#include "support/test_folder.h"
#include "support/test_host.h"
#include "tools/modFile.h"
#include "tools/real_path.h"
#include "tools/temp_folder.h"
#include "win/folders.h"
#include "win/system_text.h"
#include "win/text.h"

#include <winternl.h>

using namespace tools;

namespace {

using Texts = std::vector<std::wstring>;

// Makes a file, or for a name with a backslash at the end a folder, and the folders above it.
void Make(const std::wstring& path, DWORD attributes = FILE_ATTRIBUTE_NORMAL) {
    for (std::size_t end = path.find(L'\\', 3); end != path.npos; end = path.find(L'\\', end + 1))
        CreateDirectoryW(Extended(path.substr(0, end)).c_str(), nullptr);
    if (path.ends_with(L'\\')) return;
    MakeFile(Extended(path), attributes);
}

// How Windows looks to the deletion. In the ways 1 and 3 links to folders look like what they lead to; those of these
// tests have "link" in their names. In the ways 2 and 3 the functions that came with Vista are missing; an object's
// name begins with a device there, which Wine does not show. A folder named "closed" may never be listed.
class Ways {
public:
    explicit Ways(int way) : links_show_(way % 2 == 0) {
        self_ = this;
        functions_.put("NtSetInformationFile", &SetInformation);
        if (way < 2) return;
        functions_.put<void>("GetFinalPathNameByHandleW", nullptr);
        functions_.put("NtQueryObject", &QueryObject);
    }
    ~Ways() { step = &Nothing; }

    static void Nothing(std::wstring_view) {}
    // Comes before and behind the opening of a path, and before every change of what is open, then without one.
    static inline std::function<void(std::wstring_view path)> step = &Nothing;

private:
    static LONG NTAPI SetInformation(HANDLE file, void* status, void* record, ULONG size, int kind) {
        step({});
        const auto set = LookUpHook::original<decltype(SetInformation)>(L"ntdll.dll", "NtSetInformationFile");
        return set(file, status, record, size, kind);
    }
    static LONG NTAPI QueryObject(HANDLE object, ULONG kind, void* name, ULONG size, ULONG* length) {
        const auto query = LookUpHook::original<decltype(QueryObject)>(L"ntdll.dll", "NtQueryObject");
        const LONG result = query(object, kind, name, size, length);
        auto* const text = static_cast<UNICODE_STRING*>(name);
        const std::wstring old(text->Buffer, text->Length / sizeof(wchar_t));
        wchar_t device[MAX_PATH] = {};
        if (result < 0 || !QueryDosDeviceW(old.substr(4, 2).c_str(), device, MAX_PATH)) return result;
        const std::wstring changed = device + old.substr(6);
        changed.copy(text->Buffer, changed.size());
        text->Length = static_cast<USHORT>(changed.size() * sizeof(wchar_t));
        return result;
    }

    static void Show(WIN32_FIND_DATAW* entry) {
        if (!self_->links_show_) entry->dwFileAttributes &= ~DWORD{FILE_ATTRIBUTE_REPARSE_POINT};
    }
    static HANDLE WINAPI FindFirst(LPCWSTR pattern, WIN32_FIND_DATAW* entry) {
        const HANDLE find = self_->first_.original<decltype(FindFirstFileW)>()(pattern, entry);
        Show(entry);
        return find;
    }
    static BOOL WINAPI FindNext(HANDLE find, WIN32_FIND_DATAW* entry) {
        const BOOL found = self_->next_.original<decltype(FindNextFileW)>()(find, entry);
        Show(entry);
        return found;
    }
    static HANDLE WINAPI Open(LPCWSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security, DWORD creation,
                              DWORD flags, HANDLE like) {
        step(path);
        const bool closed = std::wstring_view(path).ends_with(L"closed") && (access & FILE_LIST_DIRECTORY) != 0;
        if (closed) return INVALID_HANDLE_VALUE;
        const auto open = self_->opens_.original<decltype(CreateFileW)>();
        const HANDLE file = open(path, access, share, security, creation, flags, like);
        step(path);
        return file;
    }

    static inline const Ways* self_;
    const bool links_show_;
    LookUpHook functions_;
    const ImportHook first_{"FindFirstFileW", &FindFirst};
    const ImportHook next_{"FindNextFileW", &FindNext};
    const ImportHook opens_{"CreateFileW", &Open};
};

// A temporary folder and a canary tree beside it. Links stay behind when it goes: nothing here may follow them, so
// each case has a place of its own.
struct Place {
    Place() {
        REQUIRE_THROW_AWAY();
        Make(temp + L"\\");
        for (const wchar_t* name : {L"\\canary", L"\\empty\\", L"\\folder\\another", L"\\folder\\canary"})
            Make(outside + name);
    }
    bool canaries_live() const {
        return NamesBelow(outside) == Texts{L"canary", L"empty\\", L"folder\\", L"folder\\another", L"folder\\canary"};
    }
    void clean() { DeleteFolderContents(temp, L"*.*", host); }

    static inline int places = 0;
    const std::wstring root = L"C:\\deletion test" + win::ToText(GetTickCount()) + L"-" + win::ToText(++places);
    const std::wstring temp = root + L"\\temp";
    const std::wstring outside = root + L"\\outside";
    TestHost host;
};

}  // namespace

TEST_CASE("everything goes but system files, open ones, links and what holds them; no link leads out, in four ways") {
    for (const int way : {0, 1, 2, 3}) {
        CAPTURE(way);
        const Ways ways(way);
        Place place;
        const std::wstring temp = place.temp + L"\\";
        for (const wchar_t* name :
             {L"plain.txt", L"no extension", L"一時ファイル①髙～.tmp", L"...name", L"dot at the end.",
              L"blank at the end ", L"dot folder.\\file", L"empty\\", L"closed\\", L"full\\inner\\file", L"full\\file",
              L"inner\\file", L"keeps\\file", L"keeps\\closed\\folder\\", L"keeps\\inner\\file", L"open"}) {
            Make(temp + name);
        }
        constexpr DWORD kHidden = FILE_ATTRIBUTE_HIDDEN;
        Make(temp + L"hidden", kHidden);
        Make(temp + L"read-only", FILE_ATTRIBUTE_READONLY | kHidden);
        Make(temp + L"system", FILE_ATTRIBUTE_SYSTEM);
        Make(temp + L"keeps\\inner\\system", FILE_ATTRIBUTE_SYSTEM | kHidden);
        // What the links lead to, as the host reads it from there, and where they stand.
        for (const auto& [target, name] : {std::pair(L"../outside/folder", L"folder link"),
                                           {L"../outside/empty", L"empty link"},
                                           {L"../outside/empty", L"link closed"},
                                           {L"../outside/canary", L"file link"},
                                           {L"../../outside", L"inner\\nested link"},
                                           {L"../../outside/folder/another", L"inner\\read-only file link"},
                                           {L"..", L"inner\\parent link"},
                                           {L".", L"itself link"},
                                           {L"folder link", L"link to a link"}}) {
            REQUIRE(MakeHostLink(target, temp + name));
        }
        // A read-only file's attribute is that of its other name outside, too.
        const std::wstring read_only = place.outside + L"\\folder\\another";
        SetFileAttributesW(read_only.c_str(), FILE_ATTRIBUTE_READONLY);
        REQUIRE(CreateHardLinkW((temp + L"inner\\hard").c_str(), read_only.c_str(), nullptr));
        REQUIRE(CreateHardLinkW((temp + L"inner\\writable").c_str(), (place.outside + L"\\canary").c_str(), nullptr));
        const win::File open(
            CreateFileW((temp + L"open").c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
        bool opened = false;  // Windows would delete a link that is opened as what it is
        Ways::step = [&](std::wstring_view path) { opened = opened || path.ends_with(L"folder link"); };
        place.clean();
        CHECK(opened == (way % 2 != 0));
        CHECK(NamesBelow(place.temp) ==
              Texts{L"empty link", L"file link", L"folder link", L"inner\\", L"inner\\hard", L"inner\\nested link",
                    L"inner\\parent link", L"inner\\read-only file link", L"itself link", L"keeps\\",
                    L"keeps\\closed\\", L"keeps\\closed\\folder\\", L"keeps\\inner\\", L"keeps\\inner\\system",
                    L"link closed", L"link to a link", L"open", L"system"});
        CHECK((GetFileAttributesW(read_only.c_str()) & FILE_ATTRIBUTE_READONLY) != 0);
        // A folder that is not where its path says is left alone.
        for (const wchar_t* elsewhere : {L"folder link", L"folder link\\..\\folder", L"missing"})
            DeleteFolderContents(temp + elsewhere, L"*.*", place.host);
        CHECK(place.canaries_live());
    }
}

// As a hostile program of the same user can on Windows by making the emptied folder a junction.
TEST_CASE("a folder exchanged for a link between two steps of its deletion costs nothing outside") {
    for (const int way : {0, 1, 2, 3}) {
        CAPTURE(way);
        const Ways ways(way);
        Place place;
        Make(place.outside + L"\\folder\\inner\\");
        REQUIRE(MakeHostLink(L"outside/folder", place.root + L"\\link"));
        int exchanges = 0;
        for (int round = 0; round < 100; ++round) {
            const std::wstring folder = place.temp + (round % 2 == 0 ? L"\\folder0" : L"\\folder1");
            for (const wchar_t* name : {L"\\folder0\\", L"\\folder1\\"}) {
                Make(place.temp + name + L"inner\\");
                for (const wchar_t* file : {L"canary", L"another"})
                    Make(place.temp + name + file, round % 5 == 0 ? FILE_ATTRIBUTE_READONLY : FILE_ATTRIBUTE_NORMAL);
            }
            const auto exchange = [&] {
                const std::wstring root = HostPath(place.root);
                CallHost(HostCall::Rename, HostPath(folder), root + L"/aside");
                CallHost(HostCall::Rename, root + L"/link", HostPath(folder));
                CallHost(HostCall::Rename, root + L"/aside", root + L"/link");
            };
            int steps_left = 1 + round % 16;
            Ways::step = [&](std::wstring_view path) {
                if (!path.empty() && !path.starts_with(Extended(folder))) return;
                if (steps_left > 0 && --steps_left == 0) exchange();
            };
            place.clean();
            Ways::step = &Ways::Nothing;
            if (steps_left == 0) {  // the exchange came to pass before the folder was empty
                exchange();
                ++exchanges;
            }
            place.clean();
        }
        CHECK(exchanges > 50);
        CHECK(NamesBelow(place.outside + L"\\folder") == Texts{L"another", L"canary", L"inner\\"});
        CHECK(NamesBelow(place.temp).empty());
    }
}

TEST_CASE("nothing goes after a close, in whichever folder it comes: not what is left there nor what lies behind") {
    static DWORD now = 0, step = 0;  // of the clock, at each look; the window is asked when it has moved
    const ImportHook clock(
        "GetTickCount", +[]() WINAPI -> DWORD { return now += step; });
    Place place;
    const auto files = [&] {
        Texts names = NamesBelow(place.temp);  // a folder that is empty by then may go
        std::erase_if(names, [](const std::wstring& name) { return name.ends_with(L'\\'); });
        return names;
    };
    for (int moment = 1; moment < 40; ++moment) {
        CAPTURE(moment);
        for (const wchar_t* name :
             {L"1\\1\\a", L"1\\1\\b", L"1\\1\\c", L"1\\2\\d", L"1\\2\\e", L"1\\f", L"2\\1\\g", L"2\\h", L"i"}) {
            DeleteFileW((place.temp + L"\\" + name).c_str());
            Make(place.temp + L"\\" + name);
        }
        Texts at_close;
        step = 100;
        place.host = TestHost();
        place.host.on_pump = [&] {
            CHECK_FALSE(place.host.closing);
            if (place.host.pumps != moment) return;
            place.host.closing = true;
            step = 0;
            at_close = files();
        };
        place.clean();
        CHECK((place.host.closing || moment > 15));
        CHECK(files() == at_close);
        CHECK_FALSE(place.host.pointer_shows_hourglass);
    }
    CHECK(NamesBelow(place.temp).empty());
}

TEST_CASE("folders go however deep they lie and however long their paths are, held while they are emptied") {
    for (const int way : {0, 2}) {
        const Ways ways(way);
        Place place;
        {
            const win::File held = OpenRealFolder(Extended(place.temp));
            REQUIRE(held);
            CHECK_FALSE(MoveFileW(place.temp.c_str(), (place.outside + L"\\moved").c_str()));
            CHECK_FALSE(RemoveDirectoryW(place.temp.c_str()));
        }
        std::wstring path = place.temp + L"\\ten of ten";
        int depth = 0;
        for (; CreateDirectoryW(Extended(path).c_str(), nullptr); path += L"\\ten of ten")
            if (++depth % 50 == 0) Make(path + L"\\file");
        CHECK(depth > 300);
        std::wstring wide = place.temp;
        for (int level = 0; level < 10; ++level)
            wide += L"\\" + std::wstring(200, L'w');
        Make(wide + L"\\" + std::wstring(200, L'f'));
        const auto file = [&](unsigned number) { return place.temp + L"\\file" + win::PadZeros(number, 3); };
        for (unsigned number = 0; number < 300; ++number)
            Make(file(number));
        place.host.on_pump = [&] {  // files that vanish do no harm
            for (unsigned number = 200; number < 300; ++number)
                DeleteFileW(file(number).c_str());
        };
        place.clean();
        CHECK(place.host.pumps > 0);
        CHECK(NamesBelow(place.temp).empty());
        CHECK(place.canaries_live());
    }
}

TEST_CASE("links are told by attribute and tag, real paths but for the dots and blanks that Wine leaves out") {
    const auto is_link = [](DWORD attributes, DWORD tag) {
        WIN32_FIND_DATAW entry = {};
        entry.dwFileAttributes = attributes;
        entry.dwReserved0 = tag;
        return IsLink(entry);
    };
    for (const DWORD tag : {0xA0000003UL, 0xA000000CUL, 0UL})  // junction or mount point, symbolic link, Wine's
        CHECK((is_link(FILE_ATTRIBUTE_REPARSE_POINT, tag) && !is_link(0, tag)));
    for (const DWORD tag : {0x80000013UL, 0x9000701AUL})  // deduplicated, kept in a cloud
        CHECK_FALSE(is_link(FILE_ATTRIBUTE_REPARSE_POINT, tag));
    CHECK(LiesAt(L"\\\\?\\C:\\a\\b", L"\\\\?\\C:\\a. .\\b "));
    for (const wchar_t* real : {L"\\\\?\\C:\\a\\c", L"\\\\?\\C:\\a", L"\\\\?\\C:\\a\\b.", L""})
        CHECK_FALSE(LiesAt(real, L"\\\\?\\C:\\a\\b"));
}

TEST_CASE("the system's, the programs', the users' and the program's own folders are never emptied") {
    REQUIRE_THROW_AWAY();
    const std::wstring profile = win::GetSpecialFolderPath(CSIDL_PROFILE);
    const std::wstring name = profile.substr(profile.rfind(L'\\'));
    const std::wstring another = profile.substr(0, profile.size() - name.size()) + L"\\another user";
    Texts made = {another, L"C:\\elsewhere", L"C:\\elsewhere\\music"};
    for (const wchar_t* kept : {L"\\Documents", L"\\Desktop", L"\\デスクトップ", L"\\My Documents"})
        made.push_back(another + kept);
    for (const wchar_t* kept : {L"\\Saved Games", L"\\OneDrive", L"\\AppData\\LocalLow"})
        made.push_back(profile + kept);
    for (const std::wstring& folder : made)
        CreateDirectoryW(folder.c_str(), nullptr);
    const std::wstring music = another + L"\\Music";
    REQUIRE(MakeHostLink(L"../../elsewhere/music", music));
    Texts refused = made;
    for (const wchar_t* variable : {L"CommonProgramW6432", L"ProgramW6432", L"CommonProgramFiles(x86)"})
        refused.push_back(throw_away::Variable(variable));
    for (const int number : {CSIDL_WINDOWS, CSIDL_SYSTEM, CSIDL_SYSTEMX86, CSIDL_PROGRAM_FILES,
                             CSIDL_PROGRAM_FILES_COMMON, CSIDL_PROGRAM_FILESX86, CSIDL_PROFILE, CSIDL_DESKTOPDIRECTORY,
                             CSIDL_PERSONAL, CSIDL_APPDATA, CSIDL_LOCAL_APPDATA, CSIDL_COMMON_APPDATA}) {
        refused.push_back(win::GetSpecialFolderPath(number));
    }
    // By other names; the program's own with what it lies in; through a link.
    for (const std::wstring& folder : {profile, another + L"\\Documents"}) {
        wchar_t short_name[MAX_PATH] = {};
        REQUIRE(GetShortPathNameW(folder.c_str(), short_name, MAX_PATH) != 0);
        refused.insert(refused.end(), {win::LowerCase(folder) + L"\\", folder + L"\\..", folder + L".", short_name,
                                       L"C:\\windows\\..\\" + folder.substr(3), win::ReplaceAll(folder, L"\\", L"/")});
    }
    for (std::wstring folder = win::ApplicationFolder(); folder.size() > 2; folder.resize(folder.rfind(L'\\')))
        refused.push_back(folder);
    REQUIRE(MakeHostLink(L"users", L"C:\\jn"));
    for (const wchar_t* below : {L"", L"\\Documents", L"\\AppData", L"\\Saved Games", L"\\..\\another user\\Desktop"})
        refused.push_back(L"C:\\jn" + name + below);
    for (const std::wstring& folder : refused)
        REQUIRE(GetFileAttributesW(folder.c_str()) != INVALID_FILE_ATTRIBUTES);
    for (const wchar_t* none :
         {L"", L".", L"C:", L"C:Temp", L"C:\\", L"c:/", L"\\Temp", L"Q:\\", L"\\\\server\\share\\temp",
          L"C:\\no such folder", L"\\\\?\\C:\\users", L"\\\\.\\C:\\users", L"\\\\?\\unix\\tmp", L"C:\\windows\\win.ini",
          L"C:\\jn", L"C:\\windows\\sysnative"}) {
        refused.emplace_back(none);
    }
    for (const int way : {0, 2}) {
        CAPTURE(way);
        const Ways ways(way);
        for (std::size_t at = 0; at < refused.size(); at += way == 0 ? 1 : 4) {  // of the other, some
            CAPTURE(refused[at]);
            CHECK(FolderToEmpty(refused[at]) == std::nullopt);
        }
    }
    for (const std::wstring& link : {std::wstring(L"C:\\jn"), music})
        CallHost(HostCall::Unlink, HostPath(link));
    for (std::size_t left = made.size(); left > 0; --left)
        RemoveDirectoryW(made[left - 1].c_str());
}

TEST_CASE("a folder to empty is given by its real path, on every system and through any link") {
    REQUIRE_THROW_AWAY();
    TestFolder folder(L"to empty");
    const std::wstring inner = folder.make_folder(L"Inner 日本 folder");
    wchar_t short_name[MAX_PATH] = {};
    REQUIRE(GetShortPathNameW(inner.c_str(), short_name, MAX_PATH) != 0);
    const std::wstring link = folder.path() + L"\\link";
    REQUIRE(MakeHostLink(L"Inner 日本 folder", link));
    for (const int way : {0, 2}) {
        CAPTURE(way);
        const Ways ways(way);
        for (const std::wstring& name : {inner + L"\\", inner + L"\\.\\", std::wstring(short_name), link,
                                         win::ReplaceAll(inner, L"\\", L"/"), win::LowerCase(inner)}) {
            CAPTURE(name);
            CHECK(FolderToEmpty(name) == inner);
        }
        CHECK(FolderToEmpty(win::WindowsDirectory() + L"\\Temp").has_value());
        const ImportHook mapped(
            "GetDriveTypeW", +[](LPCWSTR) WINAPI -> UINT { return DRIVE_REMOTE; });
        CHECK(FolderToEmpty(inner) == std::nullopt);
    }
    CallHost(HostCall::Unlink, HostPath(link));
}
