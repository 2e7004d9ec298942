#include "tools/support/folder_watch.h"

#include "tools/support/file_identity.h"
#include "tools/support/utf8.h"
#include "tools/support/windows/system_call.h"
#include "tools/support/windows/wide_text.h"

#include <cstring>
#include <optional>
#include <windows.h>

namespace orvane::tools {
namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr DWORD kChanges = FILE_NOTIFY_CHANGE_FILE_NAME | FILE_NOTIFY_CHANGE_SIZE | FILE_NOTIFY_CHANGE_LAST_WRITE;

HANDLE OpenFolder(const std::string& path) {
    const DWORD flags = FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OVERLAPPED;
    return CreateFileW(Wide(path).c_str(), FILE_LIST_DIRECTORY, kShareAll, nullptr, OPEN_EXISTING, flags, nullptr);
}

} // namespace

struct FolderWatch::System {
    explicit System(const std::string& folderPath)
        : path(folderPath), told(CreateEventW(nullptr, TRUE, FALSE, nullptr)), handle(OpenFolder(folderPath)) {}
    ~System() {
        // The system writes to the block until it has given the request up.
        DWORD ignored = 0;
        if (asked && CancelIo(handle.Get()) != 0) GetOverlappedResult(handle.Get(), &request, &ignored, TRUE);
    }
    System(const System&) = delete;
    System& operator=(const System&) = delete;

    bool Ask() {
        request = OVERLAPPED{};
        request.hEvent = told.Get();
        asked =
            ReadDirectoryChangesW(handle.Get(), block, sizeof block, FALSE, kChanges, nullptr, &request, nullptr) != 0;
        return asked;
    }

    const std::string path;
    SystemHandle told;
    SystemHandle handle; ///< Opened last, so that its failure is the one that the system tells.
    OVERLAPPED request{};
    bool asked = false;
    std::optional<FileIdentity> folder;
    alignas(DWORD) char block[65536] = {};
};

FolderWatch::FolderWatch() = default;
FolderWatch::~FolderWatch() = default;

void FolderWatch::Close() { system_.reset(); }

bool FolderWatch::Open(const std::string& path, std::string* error) {
    auto system = std::make_unique<System>(path);
    if (!system->handle.IsOpen() || !system->told.IsOpen() || !IsFolder(path) || !system->Ask()) {
        *error = "cannot be watched: " + SystemErrorText(GetLastError());
        return false;
    }
    system->folder = IdentifyFile(path);
    system_ = std::move(system);
    return true;
}

bool FolderWatch::Take(std::vector<FolderChange>* changes, bool* missed) {
    if (!IsOpen()) return false;
    bool gone = IdentifyFile(system_->path) != system_->folder;
    DWORD size = 0;
    while (!gone && GetOverlappedResult(system_->handle.Get(), &system_->request, &size, FALSE) != 0) {
        system_->asked = false;
        if (size == 0) *missed = true; // more than the block holds
        for (const char* at = system_->block; size > 0;) {
            // The name stands behind the numbers, without an end of its own.
            FILE_NOTIFY_INFORMATION event;
            std::memcpy(&event, at, offsetof(FILE_NOTIFY_INFORMATION, FileName));
            std::wstring name(event.FileNameLength / sizeof(wchar_t), L'\0');
            std::memcpy(name.data(), at + offsetof(FILE_NOTIFY_INFORMATION, FileName), event.FileNameLength);
            const bool isThere = event.Action != FILE_ACTION_REMOVED && event.Action != FILE_ACTION_RENAMED_OLD_NAME;
            if (isThere) changes->push_back({Utf8(name), event.Action == FILE_ACTION_RENAMED_NEW_NAME});
            if (event.NextEntryOffset == 0) break;
            at += event.NextEntryOffset;
        }
        gone = !system_->Ask();
    }
    if (!gone && GetLastError() != ERROR_IO_INCOMPLETE) gone = true;
    if (gone) Close();
    return !gone;
}

} // namespace orvane::tools
