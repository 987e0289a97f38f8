// Texts that have broken programs, or might: alone and pieced together they go wherever the program reads a text.
#pragma once

#include <string_view>

namespace hostile {

using namespace std::string_view_literals;

// With a bar between each two.
inline constexpr std::wstring_view kNastyTexts =
    L"¦ ¦\0¦hidden\0behind"
    // Quotes and arguments.
    L"¦\"¦\"\"¦\"\"\"¦\" ¦\"C:\\Program Files\\a¦'¦ -¦ /¦ -/ -/¦,¦\",0¦,-2147483649"
    L"¦                                                                  "
    // Paths.
    L"¦\\¦\\\\¦\\\\\\\\\\\\\\\\\\\\\\\\\\\\\\\\\\\\\\\\\\\\¦\\\\?\\¦\\\\?\\C:\\windows¦\\\\.\\PhysicalDrive0"
    L"¦\\\\server¦\\\\server\\share\\a.exe¦\\??\\C:\\¦:¦C:¦C:\\¦C:/windows/regedit.exe¦C:\\windows\\regedit.exe"
    L"¦C:\\windows\\..\\..\\..\\¦C:\\Program¦C:\\Program Files\\¦C:\\con\\con¦NUL¦COM1:¦a.exe:stream¦X:\\gone\\a.exe"
    L"¦/:\\a"
    L"¦regedit.exe¦regedit.exe. . .¦.¦..¦*?<>|¦.exe¦.lnk¦::{20D04FE0-3AEA-1069-A2D8-08002B30309D}¦shell:startup"
    // Variables, missing, nested and naming themselves.
    L"¦%¦%%¦%programfiles%¦%ProgramFiles%\\a.exe /x¦%programfiles%%programfiles%¦%windir%\\regedit.exe"
    L"¦%QORVENIX_SELF%¦%no such variable%¦%systemroot"
    // What decides about rows and links.
    L"¦KB¦(KB123456)¦Microsoft¦MsiExec.exe /X{90120000-0015-0411-0000-0000000FF1CE}¦(全ユーザー)"
    L"¦(個別ユーザー)SOFTWARE\\¦<リンク切れ>¦http://¦HTTPS://\xD800¦file:///C:/windows¦javascript:alert(1)¦mailto:"
    // Code units: halves of pairs, no characters, another direction, none in the code page, bytes 5C behind them.
    L"¦\xD800¦\xDC00\xD800¦\xD83D\xDE00¦\xFFFE\xFFFF\xFEFF¦\u202Eexe.txt¦e\x301\x301\x301\x301\x301\x301\x301\x301"
    L"¦表示ソ能¦İıẞǅ¦한국어 العربية¦\x01\x02\x1B\x7F\x80\x9F¦\r\n\t\v"
    // Numbers.
    L"¦-1¦4294967296¦99999999999999999999999999999999¦1e999¦20240231"sv;

}  // namespace hostile
