#include "tools/support/folder_watch.h"

#include "tools/support/file_identity.h"

#include <cerrno>
#include <cstring>
#include <optional>
#include <sys/inotify.h>
#include <unistd.h>

namespace orvane::tools {
namespace {

constexpr std::uint32_t kComplete = IN_CLOSE_WRITE | IN_MOVED_TO;
/// A file that is made may be complete at once: a link to one that was written elsewhere.
constexpr std::uint32_t kChanges = kComplete | IN_CREATE;
constexpr std::uint32_t kEnds = IN_DELETE_SELF | IN_MOVE_SELF;

} // namespace

struct FolderWatch::System {
    explicit System(const std::string& folderPath)
        : path(folderPath), file(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {}
    ~System() {
        if (file >= 0) ::close(file);
    }
    System(const System&) = delete;
    System& operator=(const System&) = delete;

    const std::string path;
    const int file;
    std::optional<FileIdentity> folder;
};

FolderWatch::FolderWatch() = default;
FolderWatch::~FolderWatch() = default;

void FolderWatch::Close() { system_.reset(); }

bool FolderWatch::Open(const std::string& path, std::string* error) {
    auto system = std::make_unique<System>(path);
    if (system->file < 0 || ::inotify_add_watch(system->file, path.c_str(), kChanges | kEnds | IN_ONLYDIR) < 0) {
        *error = std::string("cannot be watched: ") + std::strerror(errno);
        return false;
    }
    system->folder = IdentifyFile(path);
    system_ = std::move(system);
    return true;
}

bool FolderWatch::Take(std::vector<FolderChange>* changes, bool* missed) {
    if (!IsOpen()) return false;
    // A folder further up that moves, or another file system over this one, is told by no event.
    bool gone = IdentifyFile(system_->path) != system_->folder;
    alignas(inotify_event) char block[65536];
    ssize_t size = 0;
    while ((size = ::read(system_->file, block, sizeof block)) > 0) {
        for (const char* at = block; at < block + size;) {
            const auto* event = reinterpret_cast<const inotify_event*>(at);
            at += sizeof *event + event->len;
            if ((event->mask & IN_Q_OVERFLOW) != 0) *missed = true;
            if ((event->mask & (kEnds | IN_IGNORED | IN_UNMOUNT)) != 0) gone = true;
            if ((event->mask & kChanges) == 0 || event->len == 0) continue;
            changes->push_back({event->name, (event->mask & kComplete) != 0});
        }
    }
    if (gone) Close();
    return !gone;
}

} // namespace orvane::tools
