// The memory panel: its five figures, the clock in the window's title, and the memory-release program.
#pragma once

#include "tools/processor_load.h"

#include <array>
#include <string>

namespace tools {

inline constexpr UINT kTickInterval = 500;  // milliseconds

// The panel's labels, in the order of lblMem.
enum MemoryFigure { kMemoryLoad, kPhysicalMemory, kVirtualMemory, kPageFile, kProcessorLoad, kMemoryFigures };

using MemoryTexts = std::array<std::wstring, kMemoryFigures>;

// What the labels show until there are figures.
inline constexpr wchar_t kNoPercent[] = L"－ ％";
inline constexpr wchar_t kNoMegabytes[] = L"－ MB";

// Writes the first four figures. Megabytes are cut, never rounded: 2047.99 MB is 2047.
void WriteMemoryTexts(const MEMORYSTATUSEX& status, MemoryTexts& texts);

class MemoryMonitor {
public:
    MemoryMonitor();

    // The figures of this moment, for a tick with the panel in view. A figure that cannot be read keeps its text, but
    // the processors' load is unknown again after some ticks without the panel.
    const MemoryTexts& read();

    // Ends the counting of the processors' load, for good.
    void close() { processor_.close(); }

private:
    MemoryTexts texts_;
    DWORD last_read_ = GetTickCount();
    ProcessorLoad processor_;
};

// The window's title at `time`: the product name, five blanks, date and time.
std::wstring TitleText(const SYSTEMTIME& time);

// Asks for the memory-release program; empty when cancelled.
std::wstring ChooseMemoryRelease(HWND owner);

// Starts the memory-release program, minimised and with the focus. Nothing happens where `path` names no file.
void RunMemoryRelease(const std::wstring& path);

}  // namespace tools
