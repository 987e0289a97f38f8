#include "seeded_scan.h"

#include "win/system_library.h"

#include "support/counters.h"

using programs::Column;

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
    const win::ImageList images = programs::CreateSmallIconList();
    REQUIRE(programs::AddFileIconToImageList(images.get(), path, SHGFI_SMALLICON) == 1);
    return Pixels(images.get(), 0);
}

int ImageOf(const ui::ListView& list, int row) {
    LVITEMW item = {};
    item.mask = LVIF_IMAGE;
    item.iItem = row;
    SendMessageW(list.window(), LVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item));
    return item.iImage;
}

HIMAGELIST ImagesOf(const ui::ListView& list) {
    return reinterpret_cast<HIMAGELIST>(SendMessageW(list.window(), LVM_GETIMAGELIST, LVSIL_SMALL, 0));
}

void Plant(const SeededScan& scan) {
    const auto add = [&](const wchar_t* key, const std::wstring& command) {
        scan.machine.set_text(key, L"UninstallString", command);
    };
    add(L"1 none", L"C:\\gone.exe");
    add(L"2 quoted", L"C:\\gone.exe");
    scan.machine.set_text(L"2 quoted", L"DisplayIcon", L"\"" + kRegedit + L"\",0");
    add(L"3 msi", L"MsiExec.exe /X{90120000-0015-0411-0000-0000000FF1CE}");
    add(L"4 command", L"\"" + kRegedit + L"\" /uninstall");
    add(L"5 empty", kRegedit);
    scan.machine.set_text(L"5 empty", L"DisplayIcon", L"");
    add(L"6 quote", kRegedit);
    scan.machine.set_text(L"6 quote", L"DisplayIcon", L"\"");
    add(L"7 plain", L"C:\\gone.exe");
    scan.machine.set_text(L"7 plain", L"DisplayIcon", kMsiExec + L",-3,x");
    add(L"KB1", L"C:\\gone.exe");
    scan.machine.set_text(L"KB1", L"Publisher", L"Microsoft");
    scan.machine.set_text(L"KB1", L"DisplayIcon", kRegedit);
}

}  // namespace

TEST_CASE("rows show the icon of the file that their entry names") {
    SeededScan scan;
    Plant(scan);
    scan.run();
    CHECK(ImagesOf(scan.programs.list) == nullptr);
    CHECK(ImageOf(scan.programs.list, 1) == ui::ListView::kNoImage);

    scan.options.show_icons = true;
    const auto regedit = IconOf(kRegedit);
    const auto installer = IconOf(kMsiExec);
    REQUIRE(regedit != installer);
    for (int refresh = 0; refresh < 2; ++refresh) {
        scan.run();
        REQUIRE(ImageList_GetImageCount(scan.icons.get()) == 5);
        CHECK(ImagesOf(scan.programs.list) == scan.icons.get());
        CHECK(ImagesOf(scan.updates.list) == scan.icons.get());
        const auto shows = [&](const ui::ListView& list, int row) {
            return Pixels(scan.icons.get(), ImageOf(list, row));
        };
        for (const int row : {0, 4, 5})
            CHECK(ImageOf(scan.programs.list, row) == ui::ListView::kNoImage);
        for (const int row : {1, 3})
            CHECK((shows(scan.programs.list, row) == regedit));
        for (const int row : {2, 6})
            CHECK((shows(scan.programs.list, row) == installer));
        CHECK((shows(scan.updates.list, 0) == regedit));
    }

    scan.options.show_icons = false;
    scan.run();
    CHECK(ImagesOf(scan.programs.list) == nullptr);
    CHECK(ImageList_GetImageCount(scan.icons.get()) == 0);
}

TEST_CASE("the lists get the images with the first icon, not before") {
    SeededScan scan;
    scan.options.show_icons = true;
    scan.machine.set_text(L"1 none", L"UninstallString", L"C:\\gone.exe");
    scan.run();
    CHECK(ImagesOf(scan.programs.list) == nullptr);
    scan.machine.set_text(L"2 one", L"UninstallString", kRegedit);
    scan.run();
    CHECK(ImagesOf(scan.programs.list) == scan.icons.get());
    CHECK(ImagesOf(scan.updates.list) == scan.icons.get());
    CHECK(ImageOf(scan.programs.list, 1) == 0);
}

TEST_CASE("refreshes with icons keep no handle, no GDI object and no memory") {
    SeededScan scan;
    Plant(scan);
    scan.options.show_icons = true;
    for (int warm_up = 0; warm_up < 20; ++warm_up)
        scan.run();
    const Counters before = CountOwn();
    REQUIRE(before.handles > 0);
    REQUIRE(before.gdi_objects > 0);
    REQUIRE(before.private_kilobytes > 0);
    for (int refresh = 0; refresh < 100; ++refresh)
        scan.run();
    const Counters after = CountOwn();
    CHECK(after.handles == before.handles);
    CHECK(after.gdi_objects == before.gdi_objects);
    CHECK(after.private_kilobytes <= before.private_kilobytes + 64);
}
