// orvane: portraits from the command line.
#include "tools/orvane/commands.h"
#include "tools/orvane/document_list.h"
#include "tools/orvane/help_text.h"
#include "tools/orvane/photo_run.h"
#include "tools/orvane/photo_worker.h"
#include "tools/orvane/print_command.h"
#include "tools/orvane/report_join.h"
#include "tools/orvane/watch_run.h"
#include "tools/support/kept_memory.h"
#include "tools/support/program_arguments.h"
#include "tools/support/result_stream.h"

#include <exception>

namespace {

using namespace orvane::tools;

ExitCode Run(const std::vector<std::string>& arguments) {
    Options options;
    std::string error;
    if (!ParseOptions(arguments, &options, &error)) {
        PrintError(error);
        return kExitError;
    }
    switch (options.command) {
    case Command::help:
        return Print(kHelpText) ? kExitGood : kExitError;
    case Command::version:
        return Print("orvane " ORVANE_VERSION "\n") ? kExitGood : kExitError;
    case Command::info:
        return RunInfo(options);
    case Command::detect:
    case Command::check:
    case Command::portrait:
        return RunOverPhotos(options);
    case Command::watch:
        return RunWatch(options);
    case Command::joinReports:
        return RunJoin(options);
    case Command::documents:
        return RunDocuments(options);
    case Command::print:
        return RunPrint(options.print);
    case Command::worker:
        return RunWorker();
    }
    return kExitError;
}

} // namespace

int main(int count, char** arguments) try {
    KeepFreedMemory();
    ReserveResultStream();
    return Run(ProgramArguments(count, arguments));
} catch (const std::exception& problem) {
    PrintError(problem.what()); // memory ran out outside of any photo
    return kExitError;
}
