// Numbers of bytes and files as the program writes them.
#pragma once

#include <cstdint>
#include <string>

namespace win {

// "1.00 GB", "1.00 MB", "1.00 KB", "1023 Byte": two decimals rounded half away from zero, "." whatever the locale.
std::wstring SizeText(std::uint64_t byte_count);

// "ファイル総数 12個 (3.45 MB)".
std::wstring FileTotalText(std::uint64_t file_count, std::uint64_t byte_count);

// "1.50MB" for 1536 kilobytes, and the text that sorts sizes as numbers, "00001.50".
std::wstring MegabyteText(std::uint32_t kilobytes);
std::wstring SizeSortKey(const std::wstring& megabyte_text);

}  // namespace win
