// What lists, labels and buttons report, handed on by the list or control that reports it.
#include "shell/frmMain.h"

#include "programs/detail_link.h"
#include "sysinfo/control_panel.h"
#include "ui/control.h"

#include <windowsx.h>

namespace shell {
namespace {

// "サイズ" sorts by the hidden column, whose zero-padded text is in numeric order.
constexpr int kSizeColumn = programs::ProgramColumn::Size;
constexpr int kSizeKeyColumn = programs::ProgramColumn::SizeKey;

constexpr COLORREF kEvenRow = RGB(255, 255, 255);
constexpr COLORREF kOddRow = RGB(240, 240, 255);

}  // namespace

bool frmMain::is_program_list(Control which) { return which == Control::ListView1_0 || which == Control::ListView1_1; }

// A list's own window procedure comes behind ListProcedure.
void frmMain::watch_list(Control which) {
    const HWND window = control(which);
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    list_procedure_ =
        reinterpret_cast<WNDPROC>(SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&ListProcedure)));
}

LRESULT CALLBACK frmMain::ListProcedure(HWND window, UINT message, WPARAM wide, LPARAM parameter) {
    frmMain* form = form_of(window);
    const Control which = form->row_of(window)->control;
    switch (message) {
        case WM_MOUSEMOVE:
            if (!is_program_list(which))
                form->list_MouseMove(which, {GET_X_LPARAM(parameter), GET_Y_LPARAM(parameter)});
            break;
        case WM_NOTIFY:
            if (is_program_list(which) &&
                blocks_column(reinterpret_cast<NMHEADERW&>(*reinterpret_cast<NMHDR*>(parameter)))) {
                return TRUE;
            }
            break;
        case WM_DROPFILES:
            form->files_dropped(wide);
            return 0;
        default:
            break;
    }
    return CallWindowProcW(form->list_procedure_, window, message, wide, parameter);
}

// The column that only carries the sort key of the size stays closed, however its border is pulled.
bool frmMain::blocks_column(const NMHEADERW& change) {
    switch (change.hdr.code) {
        case static_cast<UINT>(HDN_BEGINTRACKA):
        case static_cast<UINT>(HDN_BEGINTRACKW):
        case static_cast<UINT>(HDN_DIVIDERDBLCLICKA):
        case static_cast<UINT>(HDN_DIVIDERDBLCLICKW):
            return change.iItem == kSizeKeyColumn;
        case static_cast<UINT>(HDN_ITEMCHANGINGA):
        case static_cast<UINT>(HDN_ITEMCHANGINGW):
            return change.iItem == kSizeKeyColumn && change.pitem && (change.pitem->mask & HDI_WIDTH) != 0 &&
                   change.pitem->cxy > 0;
        default:
            return false;
    }
}

// The lists of startup items and services show the cell under the pointer as their tool tip, and copy it.
void frmMain::list_MouseMove(Control which, POINT client) {
    // Windows reports a move without a movement whenever something under the pointer appears or disappears.
    if (client.x == pointer_.x && client.y == pointer_.y) return;
    pointer_ = client;
    const ui::ListView view = list(which);
    const auto hit = view.hit_test(client);
    remember_cell(view.window(), hit.row < 0 ? std::wstring() : view.cell(hit.row, hit.column));
}

void frmMain::remember_cell(HWND which, const std::wstring& text) {
    if (text == pointed_cell_) return;
    pointed_cell_ = text;
    tooltips_.set(which, text);
}

// A row has become the selected one, by click or by key. A key leaves no cell to copy but the name.
void frmMain::row_selected(Control which) {
    clicked_cell_.clear();
    remember_cell(control(which), std::wstring());
    show_row(which);
}

void frmMain::show_row(Control which) {
    switch (which) {
        case Control::ListView1_0:
        case Control::ListView1_1:
            show_program(which);
            break;
        case Control::lvStartUp:
            show_startup_entry();
            break;
        case Control::lvService:
            press_service(list(which).selected());
            break;
        default:
            break;
    }
}

// A mouse button on a list: the row under the pointer is selected and shown, empty space shows nothing.
void frmMain::list_pressed(Control which, POINT client) {
    const ui::ListView view = list(which);
    const auto hit = view.hit_test(client);
    const bool over_row = hit.row >= 0;
    if (over_row && view.selected() != hit.row) view.select(hit.row);
    const std::wstring cell = over_row ? view.cell(hit.row, hit.column) : std::wstring();
    if (is_program_list(which)) {
        clicked_cell_ = cell;
        if (over_row) show_program(which);
    } else if (which == Control::lvStartUp) {
        remember_cell(view.window(), cell);
        press_startup(over_row);
    } else if (which == Control::lvService) {
        remember_cell(view.window(), cell);
        press_service(hit.row);
    }
}

void frmMain::list_KeyDown(Control which, WORD key) {
    if (which != RowOf(shown_tab_).view) return;
    if (is_program_list(which)) program_KeyDown(key);
    if (which == Control::lvStartUp && key == VK_DELETE) mnuStartItem_Click(startup::StartItem::Delete);
}

// Double click or Enter on a row.
void frmMain::list_activated(Control which) {
    if (which != Control::ListView2) return;
    const ui::ListView catalogue = list(which);
    const int row = catalogue.selected();
    if (row >= 0) sysinfo::OpenControlPanelRow(window_, catalogue.cell(row, sysinfo::ControlPanelColumn::Path));
}

// The right button or the context-menu key.
LRESULT frmMain::context_menu(HWND which, POINT screen) {
    const ControlRow* row = row_of(which);
    if (!row || row->kind != Kind::ListView || activity_.running()) return 0;
    const ui::ListView view(which);
    const bool by_key = screen.x == -1 && screen.y == -1;
    if (by_key) {
        screen = menu_corner(view);
        key_for_menu(row->control);
    } else {
        POINT client = screen;
        ScreenToClient(which, &client);
        if (client.y < view.header_height()) return 0;
        list_pressed(row->control, client);
    }
    pop_up(row->control, screen);
    return 0;
}

// Below the selected row, or at the list's corner when that is out of view.
POINT frmMain::menu_corner(const ui::ListView& view) const {
    RECT client = {};
    GetClientRect(view.window(), &client);
    POINT corner = {client.left, view.header_height()};
    const int selected = view.selected();
    const RECT row = selected < 0 ? RECT() : view.row_place(selected);
    if (row.bottom > corner.y && row.bottom <= client.bottom) corner.y = row.bottom;
    ClientToScreen(view.window(), &corner);
    return corner;
}

void frmMain::key_for_menu(Control which) {
    const int selected = list(which).selected();
    if (which == Control::lvStartUp) start_menu_.key(selected >= 0);
    if (which == Control::lvService) press_service(selected);
}

void frmMain::pop_up(Control which, POINT screen) {
    HMENU menu = nullptr;
    if (is_program_list(which)) menu = mnuPop_.get();
    if (which == Control::lvStartUp) menu = mnuStart_.get();
    if (which == Control::lvService) menu = mnuService_.get();
    if (!menu) return;
    TrackPopupMenu(menu, TPM_RIGHTBUTTON, screen.x, screen.y, 0, window_, nullptr);
}

void frmMain::control_command(Control which, int code) {
    if (activity_.running()) return;
    switch (which) {
        case Control::cmdMenu_0:
        case Control::cmdMenu_1:
            if (code == BN_CLICKED) cmdMenu_Click(which == Control::cmdMenu_0 ? 0 : 1);
            break;
        case Control::cmdSys_0:
        case Control::cmdSys_1:
            if (code == BN_CLICKED) cmdSys_Click(which == Control::cmdSys_0 ? 0 : 1);
            break;
        case Control::Label1_2:
        case Control::Label1_3:
        case Control::Label1_11:
            if (code == STN_CLICKED) programs::OpenDetailLink(ui::TextOf(control(which)), *this);
            break;
        case Control::Label1_50:
            if (code != STN_CLICKED) break;
            SetFocus(control(Control::cb));
            SendMessageW(control(Control::cb), CB_SETEDITSEL, 0, MAKELPARAM(0, -1));
            break;
        default:
            break;
    }
}

// The frame around what the two buttons do: the clicked one stays disabled until its action has ended.
void frmMain::cmdMenu_Click(int index) {
    if (activity_.running()) return;
    const HWND button = control(Element(Control::cmdMenu_0, index));
    const bool had_focus = GetFocus() == button;
    EnableWindow(button, FALSE);
    if (had_focus) focus_view();  // a disabled control would keep the keys to itself
    switch (shown_tab_) {
        case Tab::Programs:
        case Tab::Updates:
            index == 0 ? uninstall() : forced_uninstall();
            break;
        case Tab::Startup:
            if (index == 0) mnuStartItem_Click(startup::StartItem::Delete);
            break;
        case Tab::Restore:
            index == 0 ? delete_restore_point() : create_restore_point();
            break;
        default:
            break;
    }
    enable_buttons();
}

// While an uninstaller runs no second one can start; on the other tabs the buttons stay usable.
void frmMain::enable_buttons() {
    const bool blocked = activity_.busy() && is_program_list(RowOf(shown_tab_).view);
    EnableWindow(control(Control::cmdMenu_0), !blocked);
    EnableWindow(control(Control::cmdMenu_1), !blocked);
}

// ---- stripes and sorting ----------------------------------------------------------------------------------------

// The colour of every other row, while stripes are switched on. True when `answer` is the whole answer.
bool frmMain::stripe(NMHDR& header, LRESULT& answer) {
    if (!stripes_ || header.code != static_cast<UINT>(NM_CUSTOMDRAW)) return false;
    const ControlRow* row = row_of(header.hwndFrom);
    if (!row || row->kind != Kind::ListView) return false;
    auto& draw = reinterpret_cast<NMLVCUSTOMDRAW&>(header);
    if (draw.nmcd.dwDrawStage == CDDS_PREPAINT) {
        answer = CDRF_NOTIFYITEMDRAW;
        return true;
    }
    if (draw.nmcd.dwDrawStage == CDDS_ITEMPREPAINT) {
        draw.clrTextBk = draw.nmcd.dwItemSpec % 2 == 0 ? kEvenRow : kOddRow;
    }
    return false;
}

void frmMain::list_ColumnClick(Control which, int column) {
    const int key = is_program_list(which) && column == kSizeColumn ? kSizeKeyColumn : column;
    SortState& sort = sort_[IndexOf(which)];
    const bool flips = sort.key == key && sort.order == ui::SortOrder::Ascending;
    sort = {key, column, flips ? ui::SortOrder::Descending : ui::SortOrder::Ascending};
    sort_again(which);
}

void frmMain::sort_again(Control which) {
    const SortState& sort = sort_[IndexOf(which)];
    if (sort.key < 0) return;
    list(which).sort(sort.key, sort.order);
    list(which).show_sort_arrow(sort.column, sort.order);
}

}  // namespace shell
