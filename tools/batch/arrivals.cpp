#include "tools/batch/arrivals.h"

#include "tools/batch/photo_list.h"

namespace orvane::tools {
namespace {

using std::chrono::milliseconds;

/// Between the first sight of a state and its work: a program that closes and opens a file again, or sets its times
/// at the end, gets by with one run.
constexpr milliseconds kSettling{150};
/// Between looks at a file that is being written.
constexpr milliseconds kBetweenLooks{500};
/// How long a file that nobody can tell about must have stayed the same.
constexpr milliseconds kPatience{2000};

} // namespace

void Arrivals::LookAt(Files::iterator file, Time when) {
    StopLooking(file);
    file->second.due = when;
    due_.emplace(when, file->first);
}

void Arrivals::StopLooking(Files::iterator file) {
    if (file->second.due) due_.erase({*file->second.due, file->first});
    file->second.due.reset();
}

void Arrivals::Notice(const FolderChange& change, Time now) {
    if (!IsArrivalName(change.name)) return;
    const auto entry = files_.try_emplace(change.name).first;
    File& file = entry->second;
    if (file.isGivenOut) {
        file.isNoticed = true;
        return;
    }
    const std::optional<FileStamp> stamp = eyes_.stampOf(change.name);
    if (stamp != file.seen) file.since = now;
    file.seen = stamp;
    file.isComplete = change.isComplete;
    LookAt(entry, now + kSettling);
}

void Arrivals::NoticeAll(const std::vector<std::string>& names, Time now) {
    for (auto& [name, file] : files_) file.isListed = false;
    for (const std::string& name : names) {
        if (!IsArrivalName(name)) continue;
        const auto entry = files_.try_emplace(name).first;
        entry->second.isListed = true;
        if (!entry->second.isGivenOut && !entry->second.due) LookAt(entry, now);
    }
    for (auto entry = files_.begin(); entry != files_.end();) {
        if (entry->second.isListed || entry->second.isGivenOut) {
            ++entry;
            continue;
        }
        StopLooking(entry);
        entry = files_.erase(entry);
    }
}

bool Arrivals::IsReady(Files::iterator entry, Time now) {
    File& file = entry->second;
    const std::optional<FileStamp> stamp = eyes_.stampOf(entry->first);
    if (!stamp) { // gone, or no regular file
        files_.erase(entry);
        return false;
    }
    if (file.done == stamp) return false;
    if (file.seen != stamp) {
        file.seen = stamp;
        file.since = now;
        file.isComplete = false;
    }
    const Writers writers = eyes_.writersOf(entry->first);
    const bool isSure = writers == Writers::none || (writers == Writers::unknown && file.isComplete);
    const Time ready = file.since + (isSure ? kSettling : kPatience);
    if (writers != Writers::some && now >= ready) return true;
    LookAt(entry, writers == Writers::some ? now + kBetweenLooks : ready);
    return false;
}

bool Arrivals::Next(Time now, Arrival* arrival) {
    while (!due_.empty() && due_.begin()->first <= now) {
        const auto entry = files_.find(due_.begin()->second);
        StopLooking(entry);
        if (!IsReady(entry, now)) continue;
        File& file = entry->second;
        file.isGivenOut = true;
        file.isNoticed = file.isForgotten = false;
        *arrival = {entry->first, *file.seen, file.since};
        return true;
    }
    return false;
}

void Arrivals::Finish(const Arrival& arrival, Time now) {
    const auto entry = files_.find(arrival.name);
    if (!entry->second.isForgotten) entry->second.done = arrival.stamp;
    entry->second.isGivenOut = false;
    if (entry->second.isNoticed || entry->second.isForgotten) LookAt(entry, now + kSettling);
}

void Arrivals::Return(const Arrival& arrival, Time now) {
    const auto entry = files_.find(arrival.name);
    entry->second.isGivenOut = false;
    LookAt(entry, now);
}

void Arrivals::Forget() {
    for (auto entry = files_.begin(); entry != files_.end();) {
        StopLooking(entry);
        entry->second.done.reset();
        entry->second.isForgotten = true;
        entry = entry->second.isGivenOut ? std::next(entry) : files_.erase(entry);
    }
}

bool IsArrivalName(const std::string& name) { return !name.empty() && name[0] != '.' && HasPhotoExtension(name); }

} // namespace orvane::tools
