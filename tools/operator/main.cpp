// orvane-operator: the library's window, without a host of one's own.
#include "capture/video_system.h"
#include "platform/module_folder.h"
#include "tools/operator/devices.h"
#include "tools/operator/help_text.h"
#include "tools/operator/live.h"
#include "tools/operator/review.h"
#include "tools/support/program_arguments.h"
#include "tools/support/result_stream.h"

#include <exception>

namespace {

using namespace orvane::tools;

OperatorExit Run(const std::vector<std::string>& arguments) {
    if (arguments.empty()) {
        WriteMessage(kOperatorUsage);
        return kOperatorError;
    }
    OperatorOptions options;
    std::string error;
    if (!ParseOperatorOptions(arguments, &options, &error)) return Fail(error);
    switch (options.command) {
    case OperatorCommand::review:
        return RunReview(options);
    case OperatorCommand::live:
        return RunLive(options);
    case OperatorCommand::devices:
        orvane::FindModuleFolder(); // program, library and the camera's module lie together
        return RunDevices(options, orvane::ThisVideoSystem());
    case OperatorCommand::help:
        break;
    }
    return WriteResult(kOperatorHelp) ? kOperatorDone : Fail(kNoStandardOutput);
}

} // namespace

int main(int count, char** arguments) try {
    ReserveResultStream();
    return Run(ProgramArguments(count, arguments));
} catch (const std::exception& problem) {
    return Fail(problem.what()); // memory ran out
}
