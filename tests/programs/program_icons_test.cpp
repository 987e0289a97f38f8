#include "seeded_scan.h"

#include "win/folders.h"

#include "support/leaks.h"

namespace {

const std::wstring kRegedit = win::WindowsDirectory() + L"\\regedit.exe";
const std::wstring kMsiExec = win::SystemDirectory() + L"\\MsiExec.exe";

std::vector<std::uint32_t> Pixels(HIMAGELIST images, int index) {
    constexpr int kSide = 16;
    BITMAPINFO format = {};
    format.bmiHeader = {sizeof(BITMAPINFOHEADER), kSide, kSide, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    const win::MemoryDc dc(CreateCompatibleDC(nullptr));
    const win::Bitmap bitmap(CreateDIBSection(dc.get(), &format, DIB_RGB_COLORS, &bits, nullptr, 0));
    const win::Selected selected(dc.get(), bitmap.get());
    ImageList_Draw(images, index, dc.get(), 0, 0, ILD_NORMAL);
    GdiFlush();
    const auto* pixels = static_cast<const std::uint32_t*>(bits);
    return {pixels, pixels + kSide * kSide};
}

std::vector<std::uint32_t> IconOf(const std::wstring& path) {
    const win::ImageList images = win::CreateSmallIconList();
    REQUIRE(win::AddFileIconToImageList(images.get(), path, SHGFI_SMALLICON) == 1);
    return Pixels(images.get(), 0);
}

HIMAGELIST ImagesOf(const ui::ListView& list) {
    return reinterpret_cast<HIMAGELIST>(SendMessageW(list.window(), LVM_GETIMAGELIST, LVSIL_SMALL, 0));
}

void Plant(const SeededScan& scan) {
    const auto add = [&](const wchar_t* key, const std::wstring& command, const wchar_t* icon) {
        scan.machine.set_text(key, L"UninstallString", command);
        if (icon) scan.machine.set_text(key, L"DisplayIcon", icon);
    };
    add(L"1 none", L"C:\\gone.exe", nullptr);
    add(L"2 quoted", L"C:\\gone.exe", (L"\"" + kRegedit + L"\",0").c_str());
    add(L"3 msi", L"MsiExec.exe /X{90120000-0015-0411-0000-0000000FF1CE}", nullptr);
    add(L"4 command", L"\"" + kRegedit + L"\" /uninstall", nullptr);
    add(L"5 empty", kRegedit, L"");
    add(L"6 quote", kRegedit, L"\"");
    add(L"7 plain", L"C:\\gone.exe", (kMsiExec + L",-3,x").c_str());
    add(L"KB1", L"C:\\gone.exe", kRegedit.c_str());
    scan.machine.set_text(L"KB1", L"Publisher", L"Microsoft");
}

}  // namespace

TEST_CASE("rows show the icon of the file that their entry names") {
    SeededScan scan;
    Plant(scan);
    scan.run();
    CHECK(ImagesOf(scan.programs.list) == nullptr);
    CHECK(scan.programs.image(1) == ui::ListView::kNoImage);

    scan.options.show_icons = true;
    const auto regedit = IconOf(kRegedit);
    const auto installer = IconOf(kMsiExec);
    REQUIRE(regedit != installer);
    for (int refresh = 0; refresh < 2; ++refresh) {
        scan.run();
        CHECK(ImageList_GetImageCount(scan.icons.get()) == 2);  // one a file
        CHECK(ImagesOf(scan.programs.list) == scan.icons.get());
        CHECK(ImagesOf(scan.updates.list) == scan.icons.get());
        const auto shows = [&](const TestList& list, int row) { return Pixels(scan.icons.get(), list.image(row)); };
        for (const int row : {0, 4, 5})
            CHECK(scan.programs.image(row) == ui::ListView::kNoImage);
        for (const int row : {1, 3})
            CHECK((shows(scan.programs, row) == regedit));
        for (const int row : {2, 6})
            CHECK((shows(scan.programs, row) == installer));
        CHECK((shows(scan.updates, 0) == regedit));
    }

    scan.options.show_icons = false;
    scan.run();
    CHECK(ImagesOf(scan.programs.list) == nullptr);
    CHECK(ImageList_GetImageCount(scan.icons.get()) == 0);
}

TEST_CASE("refreshes with icons keep no handle, no GDI object and no memory") {
    SeededScan scan;
    Plant(scan);
    scan.options.show_icons = true;
    CheckHoldsOnToNothing(20, 100, 64, [&] { scan.run(); });
    REQUIRE(CountOwn().gdi_objects > 0);
}
