// orvane-operator: the library's window, without a host of one's own.
#include "tools/operator/help_text.h"
#include "tools/operator/review.h"
#include "tools/support/program_arguments.h"
#include "tools/support/result_stream.h"

#include <exception>

namespace {

using namespace orvane::tools;

OperatorExit Run(const std::vector<std::string>& arguments) {
    if (arguments.empty()) {
        WriteMessage(kOperatorUsage);
        return kReviewError;
    }
    OperatorOptions options;
    std::string error;
    if (!ParseOperatorOptions(arguments, &options, &error)) {
        PrintOperatorError(error);
        return kReviewError;
    }
    if (options.command == OperatorCommand::review) return RunReview(options);
    if (WriteResult(kOperatorHelp)) return kReviewWritten;
    PrintOperatorError("cannot write to standard output");
    return kReviewError;
}

} // namespace

int main(int count, char** arguments) try {
    ReserveResultStream();
    return Run(ProgramArguments(count, arguments));
} catch (const std::exception& problem) {
    PrintOperatorError(problem.what()); // memory ran out
    return kReviewError;
}
