// The command line as every tool takes it: paths as the file functions want them.
#pragma once

#include <string>
#include <vector>

namespace orvane::tools {

/// The arguments behind the program's name, of what main was given: its bytes on Linux; on Windows the
/// process's own command line as UTF-8, whatever main's code page made of it. There a path with '*' or '?' in its last
/// part becomes the files that it stands for, as shells do it elsewhere; one that stands for none stays.
std::vector<std::string> ProgramArguments(int count, char** arguments);

} // namespace orvane::tools
