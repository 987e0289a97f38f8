#include "support/deletion_place.h"
#include "support/host_link.h"
#include "support/show.h"

using namespace deletion;
using tools::DeleteFolderContents;

namespace {

decltype(CreateFileW)* open_file = nullptr;

// Folders named "closed" may not be listed.
HANDLE WINAPI OpenUnlessClosed(LPCWSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security, DWORD creation,
                               DWORD flags, HANDLE like) {
    if (!std::wstring_view(path).ends_with(L"closed") || (access & FILE_LIST_DIRECTORY) == 0) {
        return open_file(path, access, share, security, creation, flags, like);
    }
    SetLastError(ERROR_ACCESS_DENIED);
    return INVALID_HANDLE_VALUE;
}

constexpr const wchar_t* kFolders[] = {
    L"dot folder.",  L"empty", L"full",          L"full\\inner",           L"keeps",
    L"keeps\\inner", L"inner", L"keeps\\closed", L"keeps\\closed\\folder", L"closed"};
constexpr const wchar_t* kFiles[] = {L"plain.txt",
                                     L"no extension",
                                     L"一時ファイル①髙～.tmp",
                                     L"...name",
                                     L"dot at the end.",
                                     L"blank at the end ",
                                     L"dot folder.\\file",
                                     L"full\\inner\\file",
                                     L"full\\file",
                                     L"keeps\\file",
                                     L"inner\\file",
                                     L"keeps\\inner\\file",
                                     L"open"};
// What the links lead to, as the host reads it from there, and where they stand.
constexpr std::pair<const wchar_t*, const wchar_t*> kLinks[] = {
    {L"../outside/folder", L"folder link"},
    {L"../outside/empty", L"empty link"},
    {L"../outside/empty", L"link closed"},
    {L"../outside/canary", L"file link"},
    {L"../../outside", L"inner\\nested link"},
    {L"../../outside/folder/canary", L"inner\\nested file link"},
    {L"../../outside/folder/another", L"inner\\read-only file link"},
    {L"..", L"inner\\parent link"},
    {L".", L"itself link"},
    {L"folder link", L"link to a link"}};

}  // namespace

TEST_CASE("Everything goes but system files, open ones, links and what holds them; no link leads out, in four ways") {
    using Lines = std::vector<std::wstring>;
    const ImportHook hook("CreateFileW", &OpenUnlessClosed);
    open_file = hook.original<decltype(CreateFileW)>();
    for (const Ways::Way way : Ways::kAll) {
        CAPTURE(way.vista);
        CAPTURE(way.links_show);
        const Ways ways(way);
        Place place;
        const std::wstring temp = place.temp + L"\\";
        for (const wchar_t* name : kFolders)
            MakeFolder(temp + name);
        for (const wchar_t* name : kFiles)
            MakeFile(temp + name);
        for (const auto& [target, name] : kLinks)
            REQUIRE(MakeHostLink(target, temp + name));
        constexpr DWORD kHidden = FILE_ATTRIBUTE_HIDDEN;
        MakeFile(temp + L"hidden", kHidden);
        MakeFile(temp + L"read-only", FILE_ATTRIBUTE_READONLY | kHidden);
        MakeFile(temp + L"system", FILE_ATTRIBUTE_SYSTEM);
        MakeFile(temp + L"keeps\\inner\\system", FILE_ATTRIBUTE_SYSTEM | kHidden);
        // A read-only file's attribute is that of its other name outside, too.
        const std::wstring read_only = place.outside + L"\\folder\\another";
        SetFileAttributesW(read_only.c_str(), FILE_ATTRIBUTE_READONLY);
        REQUIRE(CreateHardLinkW((temp + L"inner\\hard").c_str(), read_only.c_str(), nullptr));
        REQUIRE(CreateHardLinkW((temp + L"inner\\writable").c_str(), (place.outside + L"\\canary").c_str(), nullptr));
        const win::File open(
            CreateFileW((temp + L"open").c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
        place.clean();
        CHECK(Names(place.temp) == Lines{L"empty link", L"file link", L"folder link", L"inner", L"itself link",
                                         L"keeps", L"link closed", L"link to a link", L"open", L"system"});
        CHECK(Names(temp + L"inner") ==
              Lines{L"hard", L"nested file link", L"nested link", L"parent link", L"read-only file link"});
        CHECK(Names(temp + L"keeps") == Lines{L"closed", L"inner"});
        CHECK(Names(temp + L"keeps\\inner") == Lines{L"system"});
        CHECK((GetFileAttributesW(read_only.c_str()) & FILE_ATTRIBUTE_READONLY) != 0);
        CHECK_FALSE(place.host.pointer_shows_hourglass);
        // A folder that is not where its path says is left alone.
        for (const wchar_t* elsewhere : {L"folder link", L"folder link\\..\\folder", L"missing"})
            DeleteFolderContents(temp + elsewhere, L"*.*", place.host);
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
    static inline Race* race_;
    static inline decltype(CreateFileW)* open_;
    const Place& place_;
    TestHost host_;
    std::wstring folder_;
    int steps_left_ = 0;
    bool after_open_ = false;
    const ImportHook create_{"CreateFileW", &Open};
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

TEST_CASE("A close stops the deletion at the next entry, however deep") {
    Place place;
    std::wstring folder = place.temp;
    for (int depth = 0; depth < 5; ++depth)
        MakeFolder(folder += L"\\folder");
    for (int number = 0; number < 1000; ++number)
        MakeFile(folder + L"\\file" + win::ToText(number));
    std::size_t left_at_close = 0;
    place.host.on_pump = [&] {
        CHECK_FALSE(place.host.closing);
        left_at_close = Names(folder).size();
        place.host.closing = left_at_close < 1000;
    };
    place.clean();
    CHECK((place.host.closing && left_at_close > 0));
    CHECK(Names(folder).size() == left_at_close);
    CHECK_FALSE(place.host.pointer_shows_hourglass);
    place.host = TestHost();
    place.clean();
    CHECK(Names(place.temp).empty());
}

TEST_CASE("Folders go however deep they lie and however long their paths are, and vanishing files do no harm") {
    for (const Ways::Way way : {Ways::kAll[0], Ways::kAll[2]}) {
        const Ways ways(way);
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
        for (unsigned number = 0; number < 300; ++number)
            MakeFile(place.temp + L"\\file" + win::PadZeros(number, 3));
        place.host.on_pump = [&] {
            for (unsigned number = 200; number < 300; ++number)
                DeleteFileW((place.temp + L"\\file" + win::PadZeros(number, 3)).c_str());
        };
        place.clean();
        CHECK(place.host.pumps > 0);
        CHECK(Names(place.temp).empty());
        CHECK(place.canaries_live());
    }
}
