#include "win/backup_folder.h"

#include "win/folders.h"
#include "win/handle.h"
#include "win/registry_export.h"
#include "win/text.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace win {
namespace {

constexpr wchar_t kFolder[] = L"\\backup";
constexpr wchar_t kProgramFolder[] = L"\\Qorvenix";  // in the user's application data
constexpr wchar_t kUntitled[] = L"(名前なし)";
constexpr wchar_t kRegistrationExtension[] = L".reg";
constexpr wchar_t kUnfinished[] = L".part";  // behind the name of a file that is being written

constexpr std::size_t kNewest = 200;
constexpr std::size_t kLongestTitle = 70;
constexpr int kMostOfOneName = 99;
constexpr std::size_t kFlushedLength = 32768;  // characters
constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// "20261121-213005 ", of the local time.
std::wstring TimeStamp() {
    SYSTEMTIME now = {};
    GetLocalTime(&now);
    return PadZeros(now.wYear, 4) + PadZeros(now.wMonth, 2) + PadZeros(now.wDay, 2) + L"-" + PadZeros(now.wHour, 2) +
           PadZeros(now.wMinute, 2) + PadZeros(now.wSecond, 2) + L" ";
}

// Whether a file's name begins like those that TimeStamp makes.
bool HasTimeStamp(std::wstring_view name) {
    constexpr std::wstring_view kPattern = L"99991939-295959 ";  // the greatest character at each place
    if (name.size() <= kPattern.size()) return false;
    for (std::size_t at = 0; at < kPattern.size(); ++at) {
        const wchar_t greatest = kPattern[at];
        const wchar_t least = greatest >= L'0' && greatest <= L'9' ? L'0' : greatest;
        if (name[at] < least || name[at] > greatest) return false;
    }
    return true;
}

bool IsHighHalf(wchar_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool IsLowHalf(wchar_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

// What every file system takes: forbidden characters and halves of pairs become "_".
std::wstring SafeTitle(std::wstring_view title) {
    title = TrimBlanks(title);
    std::wstring safe(title.substr(0, kLongestTitle));
    for (std::size_t at = 0; at < safe.size(); ++at) {
        const bool pair = IsHighHalf(safe[at]) && at + 1 < safe.size() && IsLowHalf(safe[at + 1]);
        if (pair) {
            ++at;
        } else if (safe[at] < L' ' || IsHighHalf(safe[at]) || IsLowHalf(safe[at]) ||
                   Contains(L"<>:\"/\\|?*", std::wstring_view(&safe[at], 1))) {
            safe[at] = L'_';
        }
    }
    // Windows drops a dot or a blank at the end.
    if (safe.ends_with(L'.') || safe.ends_with(L' ')) safe.back() = L'_';
    return safe.empty() ? kUntitled : safe;
}

bool IsFree(const std::wstring& path) { return GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES; }

// A path in the folder at which nothing stands yet; empty when there is none, or it would be too long.
std::wstring FreePath(const std::wstring& folder, std::wstring_view title, std::wstring_view extension) {
    const std::wstring name = folder + L"\\" + TimeStamp() + SafeTitle(title);
    for (int number = 1; number <= kMostOfOneName; ++number) {
        std::wstring path = number == 1 ? name : name + L" (" + ToText(number) + L")";
        path += extension;
        if (path.size() + std::size(kUnfinished) > MAX_PATH) return {};
        if (IsFree(path) && IsFree(path + kUnfinished)) return path;
    }
    return {};
}

void Delete(const std::wstring& file) {
    SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_NORMAL);  // Windows deletes no read-only file
    DeleteFileW(file.c_str());
}

// The folder, opened so that no link can take its place; empty when it is a link.
File HoldFolder(const std::wstring& folder) {
    File held(CreateFileW(folder.c_str(), FILE_LIST_DIRECTORY, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                          OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
    const DWORD attributes = GetFileAttributesW(folder.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) return {};
    return held;
}

// Leaves the newest of the files that this module has named; `last`, the name just written, is one of them, whatever
// the clock has said.
void RemoveOldest(const std::wstring& folder, std::wstring_view last) {
    const File held = HoldFolder(folder);
    if (!held) return;
    std::vector<std::wstring> names;
    WIN32_FIND_DATAW entry = {};
    const FindHandle find(FindFirstFileW((folder + L"\\*").c_str(), &entry));
    for (bool more = static_cast<bool>(find); more; more = FindNextFileW(find.get(), &entry) != FALSE) {
        constexpr DWORD kOther = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
        if ((entry.dwFileAttributes & kOther) != 0 || !HasTimeStamp(entry.cFileName) || entry.cFileName == last)
            continue;
        names.emplace_back(entry.cFileName);
    }
    if (names.size() < kNewest) return;
    std::sort(names.begin(), names.end());
    names.resize(names.size() - (kNewest - 1));
    for (const std::wstring& name : names)
        Delete(std::wstring(folder).append(L"\\").append(name));
}

// A text file of UTF-16.
class TextFile final : public TextSink {
public:
    explicit TextFile(const std::wstring& path)
        : file_(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr)) {}

    bool is_open() const { return static_cast<bool>(file_); }
    bool write(std::wstring_view text) override {
        waiting_ += text;
        return waiting_.size() < kFlushedLength || flush();
    }
    // On the disk, not only on the way to it.
    bool finish() { return flush() && FlushFileBuffers(file_.get()); }

private:
    bool flush() {
        const auto size = static_cast<DWORD>(waiting_.size() * sizeof(wchar_t));
        DWORD written = 0;
        const bool done = WriteFile(file_.get(), waiting_.data(), size, &written, nullptr) && written == size;
        waiting_.clear();
        return done;
    }

    File file_;
    std::wstring waiting_;
};

// What is kept. `write` makes a new file of it at `path`, and leaves none behind when it fails.
class Original {
public:
    virtual bool write(const std::wstring& path) const = 0;

protected:
    ~Original() = default;
};

class RegistryOriginal : public Original {
public:
    bool write(const std::wstring& path) const override {
        bool made = false;
        {
            TextFile file(path);
            if (!file.is_open()) return false;
            made = file.write(kRegistrationHeader) && write_text(file) && file.finish();
        }
        if (!made) Delete(path);
        return made;
    }

protected:
    ~RegistryOriginal() = default;

private:
    virtual bool write_text(TextSink& sink) const = 0;  // behind the header
};

class KeyOriginal final : public RegistryOriginal {
public:
    explicit KeyOriginal(HKEY key) : key_(key) {}

private:
    bool write_text(TextSink& sink) const override { return ExportKey(key_, sink); }

    HKEY key_;
};

class ValueOriginal final : public RegistryOriginal {
public:
    ValueOriginal(HKEY key, const std::wstring& name) : key_(key), name_(name) {}

private:
    bool write_text(TextSink& sink) const override { return ExportValue(key_, name_, sink); }

    HKEY key_;
    const std::wstring& name_;
};

class FileOriginal final : public Original {
public:
    explicit FileOriginal(const std::wstring& file) : file_(file) {}

    bool write(const std::wstring& path) const override {
        // CopyFileW takes the attributes along, but of the times only that of the last change; and it is an access.
        WIN32_FILE_ATTRIBUTE_DATA facts = {};
        const bool known = GetFileAttributesExW(file_.c_str(), GetFileExInfoStandard, &facts) != FALSE;
        if (!CopyFileW(file_.c_str(), path.c_str(), TRUE)) {
            if (GetLastError() != ERROR_FILE_EXISTS) Delete(path);
            return false;
        }
        if (!known) return true;
        const File copy(
            CreateFileW(path.c_str(), FILE_WRITE_ATTRIBUTES, kShareAll, nullptr, OPEN_EXISTING, 0, nullptr));
        if (copy) SetFileTime(copy.get(), &facts.ftCreationTime, &facts.ftLastAccessTime, &facts.ftLastWriteTime);
        return true;
    }

private:
    const std::wstring& file_;
};

bool KeepIn(const std::wstring& folder, const Original& original, std::wstring_view title,
            std::wstring_view extension) {
    if (!CreateDirectoryW(folder.c_str(), nullptr) && GetLastError() != ERROR_ALREADY_EXISTS) return false;
    const std::wstring path = FreePath(folder, title, extension);
    const std::wstring unfinished = path + kUnfinished;
    if (path.empty() || !original.write(unfinished)) return false;
    if (!MoveFileW(unfinished.c_str(), path.c_str())) {
        Delete(unfinished);
        return false;
    }
    RemoveOldest(folder, std::wstring_view(path).substr(folder.size() + 1));
    return true;
}

bool Keep(const std::wstring& application_folder, const Original& original, std::wstring_view title,
          std::wstring_view extension) {
    if (KeepIn(application_folder + kFolder, original, title, extension)) return true;
    const std::wstring data = GetSpecialFolderPath(CSIDL_APPDATA);
    if (data.empty()) return false;
    CreateDirectoryW((data + kProgramFolder).c_str(), nullptr);
    return KeepIn(data + kProgramFolder + kFolder, original, title, extension);
}

// Nothing goes where nothing is.
bool IsGone(LONG error) { return error == ERROR_FILE_NOT_FOUND || error == ERROR_KEY_DELETED; }

}  // namespace

bool BackupFolder::keep_key(HKEY root, const std::wstring& key_path, std::wstring_view title) const {
    if (application_folder_.empty()) return true;
    RegKey key;
    const LONG error = RegOpenKeyExW(root, key_path.c_str(), 0, KEY_QUERY_VALUE | KEY_ENUMERATE_SUB_KEYS, key.put());
    if (error != ERROR_SUCCESS) return IsGone(error);
    return Keep(application_folder_, KeyOriginal(key.get()), title, kRegistrationExtension);
}

bool BackupFolder::keep_value(HKEY root, const std::wstring& key_path, const std::wstring& name,
                              std::wstring_view title) const {
    if (application_folder_.empty()) return true;
    RegKey key;
    LONG error = RegOpenKeyExW(root, key_path.c_str(), 0, KEY_QUERY_VALUE, key.put());
    if (error == ERROR_SUCCESS) error = RegQueryValueExW(key.get(), name.c_str(), nullptr, nullptr, nullptr, nullptr);
    if (error != ERROR_SUCCESS) return IsGone(error);
    return Keep(application_folder_, ValueOriginal(key.get(), name), title, kRegistrationExtension);
}

bool BackupFolder::keep_file(const std::wstring& file) const {
    if (application_folder_.empty() || !IsFile(file)) return true;
    const std::wstring_view name = std::wstring_view(file).substr(file.rfind(L'\\') + 1);
    const std::size_t dot = std::min(name.rfind(L'.'), name.size());
    return Keep(application_folder_, FileOriginal(file), name.substr(0, dot), name.substr(dot));
}

}  // namespace win
