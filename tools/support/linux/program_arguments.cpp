#include "tools/support/program_arguments.h"

namespace orvane::tools {

std::vector<std::string> ProgramArguments(int count, char** arguments) {
    return {arguments + (count > 0 ? 1 : 0), arguments + count};
}

} // namespace orvane::tools
