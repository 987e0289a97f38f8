// Texts that Windows writes into a buffer whose size it is told.
#pragma once

#include "win/platform.h"

#include <string>

namespace win {

// The text that `query(wchar_t* buffer, DWORD size)` writes. As GetSystemDirectoryW and its kin, it answers with the
// text's length, with the room it needs where the buffer is too small, or with 0 on failure: then the text is empty.
template <class Query>
std::wstring SizedText(Query&& query) {
    std::wstring text(MAX_PATH, L'\0');
    DWORD length = query(text.data(), static_cast<DWORD>(text.size()));
    if (length > text.size()) {
        text.resize(length);
        length = query(text.data(), length);
    }
    text.resize(length < text.size() ? length : 0);
    return text;
}

}  // namespace win
