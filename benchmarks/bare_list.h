// What a bare loop says to a list: the messages that bring the texts in, and nothing else.
#pragma once

#include "ui/list_view.h"

namespace bench {

// While it lives the list does not redraw, as in ui::RedrawSuspender. Without a list nothing is said: the loop only
// reads.
class BareList {
public:
    explicit BareList(const ui::ListView* list) : window_(list ? list->window() : nullptr) {
        send(WM_SETREDRAW, FALSE, 0);
        send(LVM_DELETEALLITEMS, 0, 0);
    }
    BareList(const BareList&) = delete;
    BareList& operator=(const BareList&) = delete;
    ~BareList() {
        send(WM_SETREDRAW, TRUE, 0);
        if (window_) RedrawWindow(window_, nullptr, nullptr, RDW_ERASE | RDW_FRAME | RDW_INVALIDATE | RDW_ALLCHILDREN);
    }

    void add(const wchar_t* text, int image = ui::ListView::kNoImage) {
        LVITEMW item = {};
        item.mask = LVIF_TEXT | LVIF_IMAGE | LVIF_PARAM;
        item.iItem = ++row_;
        item.pszText = const_cast<wchar_t*>(text);
        item.iImage = image;
        send(LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
    }
    // A cell of the row that was added last.
    void set(int column, const wchar_t* text) {
        LVITEMW item = {};
        item.iSubItem = column;
        item.pszText = const_cast<wchar_t*>(text);
        send(LVM_SETITEMTEXTW, static_cast<WPARAM>(row_), reinterpret_cast<LPARAM>(&item));
    }

private:
    void send(UINT message, WPARAM wide, LPARAM parameter) const {
        if (window_) SendMessageW(window_, message, wide, parameter);
    }

    HWND window_;
    int row_ = -1;
};

}  // namespace bench
