#include "win/registry_export.h"

#include "win/handle.h"
#include "win/system_library.h"
#include "win/system_text.h"
#include "win/text.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <utility>
#include <vector>

namespace win {
namespace {

constexpr std::size_t kFirstValueBytes = 4096;
constexpr std::size_t kLargestValue = 8 << 20;  // bytes; the text of it takes seven times as much
constexpr DWORD kLongestValueName = 16384;      // with its NUL, as the lengths of key names
constexpr DWORD kLongestKeyName = 512;
constexpr int kDeepest = 512;  // levels that Windows has
constexpr std::size_t kBytesPerLine = 25;

constexpr std::pair<std::wstring_view, std::wstring_view> kRoots[] = {
    {L"\\REGISTRY\\MACHINE\\", L"HKEY_LOCAL_MACHINE\\"},
    {L"\\REGISTRY\\USER\\", L"HKEY_USERS\\"},
};

// The kernel's name of an open key; empty when it does not tell.
std::wstring KernelName(HKEY key) {
    using QueryKey = LONG(NTAPI*)(HANDLE, int, void*, ULONG, ULONG*);
    constexpr int kKeyNameInformation = 3;
    static const auto query = FindFunction<QueryKey>(GetModuleHandleW(L"ntdll.dll"), "NtQueryKey");
    // The number of the name's bytes, and the name.
    std::vector<ULONG> record(0x10000 / sizeof(ULONG));
    const auto size = static_cast<ULONG>(record.size() * sizeof(ULONG));
    ULONG used = 0;
    if (!query || query(key, kKeyNameInformation, record.data(), size, &used) < 0) return {};
    std::wstring name(std::min<std::size_t>(record[0], size - sizeof(ULONG)) / sizeof(wchar_t), L'\0');
    std::memcpy(name.data(), &record[1], name.size() * sizeof(wchar_t));
    return name;
}

// A name of a key, and a text, stands on one line as it is.
bool FitsLine(std::wstring_view name) { return name.find_first_of(std::wstring_view(L"\0\r\n", 3)) == name.npos; }

// In quotes. A line break must not become one of the file: what follows it would be taken for keys and values.
std::wstring Quoted(std::wstring_view text) {
    std::wstring quoted = L"\"";
    for (const wchar_t each : text) {
        const bool line_break = each == L'\r' || each == L'\n';
        if (line_break || each == L'\\' || each == L'"') quoted += L'\\';
        quoted += !line_break ? each : each == L'\r' ? L'r' : L'n';
    }
    return quoted + L"\"";
}

// The characters of a text that ends with its only NUL and has no line break; nothing of all others, which are written
// byte by byte.
std::optional<std::wstring> PlainText(std::span<const BYTE> data) {
    std::wstring text(data.size() / sizeof(wchar_t), L'\0');
    if (text.empty() || data.size() % sizeof(wchar_t) != 0) return {};
    std::memcpy(text.data(), data.data(), data.size());
    if (text.back() != L'\0') return {};
    text.pop_back();
    if (!FitsLine(text)) return {};
    return text;
}

std::wstring Hexadecimal(DWORD number, int digits) {
    std::wstring text;
    for (; number != 0 || digits > 0; number /= 16, --digits)
        text.insert(text.begin(), L"0123456789abcdef"[number % 16]);
    return text;
}

// "hex:" for REG_BINARY, "hex(7):" for the type 7; then the bytes, on as many lines as they need.
std::wstring Bytes(DWORD type, std::span<const BYTE> data) {
    std::wstring text = type == REG_BINARY ? L"hex:" : L"hex(" + Hexadecimal(type, 1) + L"):";
    text.reserve(text.size() + data.size() * 3 + data.size() / kBytesPerLine * 5);
    for (std::size_t index = 0; index < data.size(); ++index) {
        if (index != 0) text += index % kBytesPerLine == 0 ? L",\\\r\n  " : L",";
        text += L"0123456789abcdef"[data[index] / 16];
        text += L"0123456789abcdef"[data[index] % 16];
    }
    return text;
}

// Reads the values of one key after another into buffers that grow.
class KeyReader {
public:
    explicit KeyReader(TextSink& sink) : sink_(sink), name_(kLongestValueName, L'\0'), data_(kFirstValueBytes) {}

    bool write_key(HKEY key, const std::wstring& path, int level = 0);
    bool write_value(HKEY key, const std::wstring& name);

private:
    bool write_values(HKEY key);
    bool write_subkeys(HKEY key, const std::wstring& path, int level);

    // Calls `read(size)` until the data have room. Its last result; ERROR_MORE_DATA where they are too many.
    template <class Read>
    LONG with_room(Read&& read) {
        for (;;) {
            auto size = static_cast<DWORD>(data_.size());
            const LONG result = read(size);
            size_ = size;
            if (result != ERROR_MORE_DATA || data_.size() == kLargestValue) return result;
            data_.resize(std::min(std::max<std::size_t>(size, data_.size() * 2), kLargestValue));
        }
    }
    std::span<const BYTE> data() const { return std::span(data_).first(std::min<std::size_t>(size_, data_.size())); }

    TextSink& sink_;
    std::wstring name_;
    std::vector<BYTE> data_;
    DWORD size_ = 0;  // of what was read last, in bytes
};

bool KeyReader::write_key(HKEY key, const std::wstring& path, int level) {
    return sink_.write(L"\r\n[" + path + L"]\r\n") && write_values(key) && write_subkeys(key, path, level);
}

bool KeyReader::write_values(HKEY key) {
    for (DWORD index = 0;; ++index) {
        DWORD length = 0;
        DWORD type = REG_NONE;
        const LONG result = with_room([&](DWORD& size) {
            length = kLongestValueName;
            return RegEnumValueW(key, index, name_.data(), &length, nullptr, &type, data_.data(), &size);
        });
        if (result == ERROR_MORE_DATA) continue;
        if (result != ERROR_SUCCESS) return true;  // the end, or a key that is gone
        if (!sink_.write(RegistrationValue(std::wstring_view(name_).substr(0, length), type, data()))) return false;
    }
}

bool KeyReader::write_subkeys(HKEY key, const std::wstring& path, int level) {
    if (level == kDeepest) return true;
    std::wstring name(kLongestKeyName, L'\0');
    for (DWORD index = 0;; ++index) {
        DWORD length = kLongestKeyName;
        name.resize(kLongestKeyName);
        if (RegEnumKeyExW(key, index, name.data(), &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) {
            return true;
        }
        name.resize(length);
        RegKey subkey;
        if (!FitsLine(name) || RegOpenKeyExW(key, name.c_str(), 0, KEY_QUERY_VALUE | KEY_ENUMERATE_SUB_KEYS,
                                             subkey.put()) != ERROR_SUCCESS) {
            continue;
        }
        if (!write_key(subkey.get(), std::wstring(path).append(L"\\").append(name), level + 1)) return false;
    }
}

bool KeyReader::write_value(HKEY key, const std::wstring& name) {
    DWORD type = REG_NONE;
    const LONG result = with_room(
        [&](DWORD& size) { return RegQueryValueExW(key, name.c_str(), nullptr, &type, data_.data(), &size); });
    return result == ERROR_SUCCESS && sink_.write(RegistrationValue(name, type, data()));
}

}  // namespace

std::wstring RegistryEditorPath(HKEY key) {
    const std::wstring name = KernelName(key);
    if (!FitsLine(name)) return {};
    for (const auto& [kernel, editor] : kRoots) {
        if (LowerCase(name.substr(0, kernel.size())) != LowerCase(kernel)) continue;
        return std::wstring(editor).append(name, kernel.size());
    }
    return {};
}

std::wstring RegistrationValue(std::wstring_view name, DWORD type, std::span<const BYTE> data) {
    if (name.find(L'\0') != name.npos) return {};
    std::wstring text = name.empty() ? L"@=" : Quoted(name) + L"=";
    const auto plain = type == REG_SZ ? PlainText(data) : std::nullopt;
    if (plain) {
        text += Quoted(*plain);
    } else if (type == REG_DWORD && data.size() == sizeof(DWORD)) {
        DWORD number = 0;
        std::memcpy(&number, data.data(), sizeof number);
        text += L"dword:" + Hexadecimal(number, 8);
    } else {
        text += Bytes(type, data);
    }
    return text + L"\r\n";
}

bool ExportKey(HKEY key, TextSink& sink) {
    const std::wstring path = RegistryEditorPath(key);
    return !path.empty() && KeyReader(sink).write_key(key, path);
}

bool ExportValue(HKEY key, const std::wstring& name, TextSink& sink) {
    const std::wstring path = RegistryEditorPath(key);
    return !path.empty() && sink.write(L"\r\n[" + path + L"]\r\n") && KeyReader(sink).write_value(key, name);
}

}  // namespace win
