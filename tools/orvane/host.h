// The library as this program uses it: a host without a window. Settings and results go through the
// exported functions; the run itself is taken step by step, since a host can't ask them for the face
// rectangle or for a turn.
#pragma once

#include "tools/orvane/options.h"
#include "tools/orvane/report.h"
#include "tools/orvane/steps.h"
#include "tools/support/picture.h"

#include <string>

namespace orvane::tools {

/// What `orvane info` tells.
struct LibraryInfo {
    std::string version;
    int32 bits = 0; ///< Of a pointer.
    std::string classifierFile;
    int32 classifierStatus = 0; ///< 0, or the code that every detection will return.
    int32 windowWidth = 0;
    int32 windowHeight = 0;
    int32 stages = 0;
    int32 stumps = 0;
    int32 rectangles = 0;
    int64 bytes = 0; ///< That the classifier's tables take in the file.
    int32 processorClass = 0;
    int32 processorColumn = 0;
    std::string columnName;
};

/// A session of the library, open as long as this lives. One at a time.
class Host {
public:
    Host();
    ~Host();
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    /// Result of opening the session; with anything but 0 nothing else here may be called.
    int32 Status() const { return status_; }

    LibraryInfo Info() const;

    /// Looks for the face and notes status, face, groups of hits and times in `report`.
    /// @param faces where it is not null, how many faces were found
    void Detect(const Picture& photo, PhotoReport* report, int32* faces = nullptr);

    /// Makes the portrait into `*portrait` and notes status, face and times in `report`; without a
    /// face, or after a failure, `*portrait` is empty. `steps`, unless it is null, receives what each
    /// action made, as far as they came. A face that `options` has marked by hand, which lies in the photo, counts in
    /// place of the detector's.
    void MakePortrait(const Picture& photo, const Options& options, Picture* portrait, PhotoReport* report,
                      Steps* steps = nullptr);

private:
    int32 status_;
};

} // namespace orvane::tools
