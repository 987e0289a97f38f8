#include "support/deletion_place.h"
#include "support/host_link.h"
#include "support/show.h"

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
    for (const Ways::Way way : Ways::kAll) {
        CAPTURE(way.vista);
        CAPTURE(way.links_show);
        const Ways ways(way);
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
        REQUIRE(CreateHardLinkW((inner + L"\\hard").c_str(), read_only.c_str(), nullptr));
        REQUIRE(CreateHardLinkW((inner + L"\\writable").c_str(), (place.outside + L"\\canary").c_str(), nullptr));
        REQUIRE(MakeHostLink(L"..", inner + L"\\parent link"));
        REQUIRE(MakeHostLink(L".", place.temp + L"\\itself link"));
        REQUIRE(MakeHostLink(L"folder link", place.temp + L"\\link to a link"));
        MakeFile(place.temp + L"\\file");
        place.clean();
        CHECK(place.canaries_live());
        CHECK(Names(place.temp) == std::vector<std::wstring>{L"empty link", L"file link", L"folder link", L"inner",
                                                             L"itself link", L"link to a link"});
        CHECK((GetFileAttributesW(read_only.c_str()) & FILE_ATTRIBUTE_READONLY) != 0);
        CHECK(Names(inner) == std::vector<std::wstring>{L"hard", L"nested file link", L"nested link", L"parent link",
                                                        L"read-only file link"});
        // A folder that is not where its path says is left alone.
        DeleteFolderContents(place.temp + L"\\folder link", L"*.*", place.host);
        DeleteFolderContents(place.temp + L"\\folder link\\..\\folder", L"*.*", place.host);
        DeleteFolderContents(place.temp + L"\\missing", L"*.*", place.host);
        CHECK(place.canaries_live());
    }
}

// Exchanges a folder for a link out of the temporary folder at a moment between two steps of the deletion, as a
// hostile program of the same user can on Windows by making the emptied folder a junction.
class Race {
public:
    explicit Race(const Place& place) : place_(place) {
        race_ = this;
        open_ = create_.original<decltype(CreateFileW)>();
        delete_ = delete_hook_.original<decltype(DeleteFileW)>();
        remove_ = remove_hook_.original<decltype(RemoveDirectoryW)>();
        Ways::before_change = [] { race_->step(); };
    }
    ~Race() { Ways::before_change = nullptr; }

    // Whether the exchange came to pass before the folder was empty.
    bool round(int number) {
        steps_left_ = 1 + number % 8;
        after_open_ = number % 3 == 0;
        folder_ = place_.temp + L"\\folder" + win::ToText(number % 2);
        for (int each = 0; each < 2; ++each) {
            const std::wstring folder = place_.temp + L"\\folder" + win::ToText(each);
            MakeFolder(folder);
            MakeFolder(folder + L"\\inner");
            for (const wchar_t* name : {L"\\canary", L"\\another"})
                MakeFile(folder + name, number % 5 == 0 ? FILE_ATTRIBUTE_READONLY : FILE_ATTRIBUTE_NORMAL);
        }
        tools::DeleteFolderContents(place_.temp, L"*.*", host_);
        const bool done = steps_left_ == 0;
        steps_left_ = 0;
        if (done) exchange();
        tools::DeleteFolderContents(place_.temp, L"*.*", host_);
        return done;
    }

private:
    void exchange() const {
        const std::wstring aside = HostPath(place_.temp) + L"/../aside";
        const std::wstring link = HostPath(place_.temp) + L"/../link";
        CallHost(HostCall::Rename, HostPath(folder_), aside);
        CallHost(HostCall::Rename, link, HostPath(folder_));
        CallHost(HostCall::Rename, aside, link);
    }
    void step() {
        if (steps_left_ > 0 && --steps_left_ == 0) exchange();
    }
    bool concerns(LPCWSTR path) const { return std::wstring_view(path).starts_with(Raw(folder_)); }

    static HANDLE WINAPI Open(LPCWSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security, DWORD creation,
                              DWORD flags, HANDLE like) {
        const bool step = race_->concerns(path) && creation == OPEN_EXISTING;
        if (step && !race_->after_open_) race_->step();
        const HANDLE file = open_(path, access, share, security, creation, flags, like);
        if (step && race_->after_open_) race_->step();
        return file;
    }
    static BOOL WINAPI Delete(LPCWSTR path) {
        if (race_->concerns(path)) race_->step();
        return delete_(path);
    }
    static BOOL WINAPI Remove(LPCWSTR path) {
        if (race_->concerns(path)) race_->step();
        return remove_(path);
    }

    static inline Race* race_;
    static inline decltype(CreateFileW)* open_;
    static inline decltype(DeleteFileW)* delete_;
    static inline decltype(RemoveDirectoryW)* remove_;
    const Place& place_;
    TestHost host_;
    std::wstring folder_;
    int steps_left_ = 0;
    bool after_open_ = false;
    const ImportHook create_{"CreateFileW", &Open};
    const ImportHook delete_hook_{"DeleteFileW", &Delete};
    const ImportHook remove_hook_{"RemoveDirectoryW", &Remove};
};

TEST_CASE("A folder that becomes a link between look and deletion costs nothing outside, in 200 rounds") {
    for (const Ways::Way way : Ways::kAll) {
        CAPTURE(way.vista);
        CAPTURE(way.links_show);
        const Ways ways(way);
        Place place;
        MakeFolder(place.outside + L"\\folder\\inner");
        REQUIRE(MakeHostLink(L"../outside/folder", place.temp + L"\\..\\link"));
        Race race(place);
        int exchanges = 0;
        for (int round = 0; round < 100; ++round)
            exchanges += race.round(round) ? 1 : 0;
        CHECK(exchanges > 50);
        CHECK(Names(place.outside + L"\\folder") == std::vector<std::wstring>{L"another", L"canary", L"inner"});
        CHECK(Names(place.temp).empty());
    }
}

TEST_CASE("An empty folder that cannot be listed goes as well, and a link that looks like one stays") {
    static decltype(CreateFileW)* open = nullptr;
    const ImportHook hook(
        "CreateFileW",
        +[](LPCWSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security, DWORD creation, DWORD flags,
            HANDLE like) WINAPI -> HANDLE {
            if (!std::wstring_view(path).ends_with(L"closed") || (access & FILE_LIST_DIRECTORY) == 0) {
                return open(path, access, share, security, creation, flags, like);
            }
            SetLastError(ERROR_ACCESS_DENIED);
            return INVALID_HANDLE_VALUE;
        });
    REQUIRE(hook);
    open = hook.original<decltype(CreateFileW)>();
    for (const Ways::Way way : Ways::kAll) {
        CAPTURE(way.vista);
        CAPTURE(way.links_show);
        const Ways ways(way);
        Place place;
        for (const wchar_t* name : {L"\\closed", L"\\full", L"\\full\\closed", L"\\full\\closed\\inner"})
            MakeFolder(place.temp + name);
        REQUIRE(MakeHostLink(L"../outside/empty", place.temp + L"\\link closed"));
        place.clean();
        CHECK(Names(place.temp) == std::vector<std::wstring>{L"full", L"link closed"});
        CHECK(place.canaries_live());
    }
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
