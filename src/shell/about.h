// Who makes the program, and where it is at home.
#pragma once

namespace shell {

inline constexpr wchar_t kHomePage[] = L"https://qorvenix.example/";
inline constexpr wchar_t kAuthor[] = L"Qorvenix contributors";

}  // namespace shell
