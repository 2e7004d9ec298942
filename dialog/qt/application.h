// The application object that every window needs: the host's own, or one that is made here and kept until the
// process ends.
#pragma once

#include <QString>

namespace orvane {

/// Sees to it that windows can be opened by the calling thread. Why they can't, in one line, or an empty text.
QString ApplicationProblem();

/// The same as a yes or no; each reason is told once on standard error.
bool HasApplication();

} // namespace orvane
