#include "tools/cleanup.h"

#include "support/host_link.h"
#include "support/import_hook.h"
#include "support/recycle_bin.h"
#include "support/show.h"
#include "support/test_host.h"
#include "tools/modFile.h"
#include "win/folders.h"

#include <string>
#include <vector>

using namespace tools;

namespace {

const std::vector<std::wstring> kFramed = {L"削除処理中です...", L"削除完了"};

}  // namespace

TEST_CASE("The recycle bin is emptied after a question that tells what it holds") {
    REQUIRE_THROW_AWAY();
    MakeDataFolder();
    TestFolder folder(L"discarded");
    TestHost host;
    REQUIRE(GetRecycleBinCount() == 0);
    CHECK((!mnuDelete_Click().enabled && mnuDelete_Click().caption == std::wstring(L"ごみ箱を空にする(空)")));
    CHECK_FALSE(mnuDeleteItem_Click(CleanupItem::RecycleBin, host));
    CHECK(host.questions.empty());
    CHECK(host.statuses == kFramed);

    Discard(folder, L"one.txt", 1500);
    Discard(folder, L"二.txt", 3108);
    CHECK(GetRecycleBinCount() == 2);
    CHECK((mnuDelete_Click().enabled && mnuDelete_Click().caption == std::wstring(L"ごみ箱を空にする(&E)")));
    host = TestHost();
    host.answer = ui::Answer::Cancel;
    CHECK_FALSE(mnuDeleteItem_Click(CleanupItem::RecycleBin, host));
    CHECK(GetRecycleBinCount() == 2);
    REQUIRE(host.questions.size() == 1);
    CHECK(host.questions[0].title == L"ファイル削除の確認");
    CHECK(host.questions[0].text == L"ごみ箱を空にしますか？\r\n\r\nファイル総数 2個 (4.50 KB)");
    CHECK(host.questions[0].icon == MB_ICONQUESTION);
    CHECK(host.statuses == kFramed);

    host = TestHost();
    CHECK(mnuDeleteItem_Click(CleanupItem::RecycleBin, host));
    CHECK(GetRecycleBinCount() == 0);
    CHECK(host.questions.size() == 1);
    CHECK(host.statuses == kFramed);

    Discard(folder, L"three.txt", 1);
    CHECK(EmptyRecycleBin(false, {}, SHERB_NOCONFIRMATION, host));
    CHECK(host.questions.size() == 1);
    CHECK(GetRecycleBinCount() == 0);
}

TEST_CASE("The temporary folder is emptied, also through a link, but never one that is none, and that is said") {
    REQUIRE_THROW_AWAY();
    TestFolder folder(L"emptied");
    const std::wstring temp = folder.make_folder(L"temp");
    const std::wstring file = temp + L"\\file";
    const std::wstring link = folder.path() + L"\\link";
    REQUIRE(MakeHostLink(L"temp", link));
    const std::wstring old = throw_away::Variable(L"TMP");
    const auto run = [&](const std::wstring& variable) {
        win::File(CreateFileW(file.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr)).reset();
        SetEnvironmentVariableW(L"TMP", variable.c_str());
        TestHost host;
        CHECK_FALSE(mnuDeleteItem_Click(CleanupItem::TemporaryFiles, host));
        const bool emptied = !win::IsFile(file);
        CHECK(host.statuses ==
              (emptied ? kFramed
                       : std::vector<std::wstring>{L"削除処理中です...",
                                                   L"安全のため、この一時フォルダの中身は削除しませんでした"}));
        CHECK(host.questions.empty());
        CHECK_FALSE(host.pointer_shows_hourglass);
        return emptied;
    };
    // Relative to the current folder they would all lead to one that may be emptied.
    SetCurrentDirectoryW(folder.path().c_str());
    for (const std::wstring& variable :
         {std::wstring(L"temp"), std::wstring(L".\\temp"), std::wstring(L"C:temp"), folder.path() + L"\\missing",
          std::wstring(L"C:\\"), std::wstring(L"\\\\server\\share"), L"C:\\" + std::wstring(300, L'a')}) {
        CAPTURE(variable);
        CHECK_FALSE(run(variable));
    }
    SetCurrentDirectoryW(L"C:\\");
    CHECK(run(temp));
    CHECK(run(link));
    SetEnvironmentVariableW(L"TMP", old.c_str());
    CallHost(HostCall::Unlink, HostPath(link));
}

TEST_CASE("Every command says that it is done, whatever came of it; recent documents go by one call without one") {
    REQUIRE_THROW_AWAY();
    static std::vector<std::pair<UINT, LPCVOID>> calls;
    const ImportHook hook(
        "SHAddToRecentDocs", +[](UINT flags, LPCVOID file) WINAPI { calls.emplace_back(flags, file); });
    REQUIRE(hook);
    for (const int command :
         {CleanupItem::RecentDocuments, CleanupItem::BrowserCache, CleanupItem::Cookies, CleanupItem::UrlHistory}) {
        TestHost host;  // without COM the history cannot even be created
        CHECK_FALSE(mnuDeleteItem_Click(command, host));
        CHECK(host.statuses == kFramed);
        CHECK(host.questions.empty());
    }
    CHECK((calls == std::vector<std::pair<UINT, LPCVOID>>{{2, nullptr}}));
}
