#include "tools/orvane/options.h"

#include "tools/batch/output_pattern.h"
#include "tools/orvane/report_file.h"
#include "tools/support/file_options.h"

#include <optional>

namespace orvane::tools {
namespace {

bool SetTolerance(const std::string& text, Options* options, std::string* error) {
    const auto value = NumberWithin(text, 0, kMaxTolerance);
    if (!value) {
        *error = "--tolerance wants percent, " + Range(0, kMaxTolerance) + ", not '" + text + "'";
        return false;
    }
    options->tolerance = *value;
    return true;
}

bool SetRotation(const std::string& text, Options* options, std::string* error) {
    const auto value = NumberWithin(text, -359, 359);
    if (!value) {
        *error = "--rotate wants whole degrees, " + Range(-359, 359) + ", not '" + text + "'";
        return false;
    }
    options->rotation = (*value + 360) % 360;
    return true;
}

bool SetOutput(const std::string& text, Options* options, std::string* error) {
    options->output = text;
    if (text.empty()) *error = "-o wants a file or a folder";
    return !text.empty();
}

bool SetSteps(const std::string& text, Options* options, std::string* error) {
    options->steps = text;
    if (text.empty()) *error = "--steps wants a folder";
    return !text.empty();
}

bool SetOutputName(const std::string& text, Options* options, std::string* error) {
    options->outputName = text;
    return CheckPattern(text, error);
}

bool SetFilesFrom(const std::string& text, Options* options, std::string* error) {
    options->filesFrom = text;
    if (text.empty()) *error = "--files-from wants a file, or - for standard input";
    return !text.empty();
}

bool SetReport(const std::string& text, Options* options, std::string* error) {
    options->report = text;
    if (IsReportName(text)) return true;
    *error = "--report wants a file named .csv or .jsonl, not '" + text + "'";
    return false;
}

bool SetShard(const std::string& text, Options* options, std::string* error) {
    const std::optional<Shard> shard = ShardOf(text);
    if (!shard) {
        *error = "--shard wants I/N, such as 1/4, of at most " + std::to_string(kMostShards) + ", not '" + text + "'";
        return false;
    }
    options->shard = *shard;
    return true;
}

bool SetJobs(const std::string& text, Options* options, std::string* error) {
    options->jobs = NumberWithin(text, 1, kMaxJobs);
    if (!options->jobs) *error = "--jobs wants a number, " + Range(1, kMaxJobs) + ", not '" + text + "'";
    return options->jobs.has_value();
}

bool SetTimeout(const std::string& text, Options* options, std::string* error) {
    options->timeout = NumberWithin(text, 1, kMaxTimeout);
    if (!options->timeout) *error = "--timeout wants seconds, " + Range(1, kMaxTimeout) + ", not '" + text + "'";
    return options->timeout.has_value();
}

/// Megabytes with an M behind them, or gigabytes with a G.
bool SetMemory(const std::string& text, Options* options, std::string* error) {
    const char unit = text.empty() ? '\0' : text.back();
    const auto count = NumberWithin(text.substr(0, text.size() - (text.empty() ? 0 : 1)), 1, 1 << 20);
    if (count && (unit == 'M' || unit == 'G')) {
        const std::uint64_t bytes = static_cast<std::uint64_t>(*count) * (unit == 'G' ? 1024 : 1) * kMegabyte;
        if (bytes >= kLeastMemory) {
            options->memory = bytes;
            return true;
        }
    }
    *error = "--memory wants a size such as 2G or 500M, at least 64M, not '" + text + "'";
    return false;
}

struct ValueOption {
    const char* name;
    bool (*set)(const std::string& text, Options* options, std::string* error);
    unsigned commands; ///< Those that know it.
};

constexpr unsigned kPortrait = 1;
constexpr unsigned kDetect = 2;
constexpr unsigned kJoin = 4;
constexpr unsigned kInfo = 8;
constexpr unsigned kWatch = 16;
constexpr unsigned kDocuments = 32;
constexpr unsigned kCheck = 64;
constexpr unsigned kLooking = kDetect | kCheck;

/// A setting that other programs know too.
template <bool set(const std::string& text, PortraitSettings* settings, std::string* error)>
bool Shared(const std::string& text, Options* options, std::string* error) {
    return set(text, options, error);
}
template <bool set(const std::string& text, FaceSettings* settings, std::string* error)>
bool OfFace(const std::string& text, Options* options, std::string* error) {
    return set(text, options, error);
}

/// One that bears on the frame as well, or on it alone.
template <bool set(const std::string& text, PortraitSettings* settings, FrameOptions* frame, std::string* error)>
bool Framed(const std::string& text, Options* options, std::string* error) {
    return set(text, options, options, error);
}
template <bool set(const std::string& text, FrameOptions* frame, std::string* error)>
bool OfFrame(const std::string& text, Options* options, std::string* error) {
    return set(text, options, error);
}

/// The same for settings of the file.
template <bool set(const std::string& text, FileSettings* settings, std::string* error)>
bool OfFile(const std::string& text, Options* options, std::string* error) {
    return set(text, options, error);
}

constexpr ValueOption kValueOptions[] = {{"-o", SetOutput, kPortrait | kJoin | kWatch},
                                         {"--output", SetOutput, kPortrait | kJoin | kWatch},
                                         {"--output-name", SetOutputName, kPortrait | kWatch},
                                         {"--size", Framed<SetPortraitSize>, kPortrait | kWatch},
                                         {"--crop-ratio", Framed<SetRatio>, kPortrait | kWatch},
                                         {"--document", OfFrame<SetDocument>, kPortrait | kWatch | kCheck},
                                         {"--head", OfFrame<SetHead>, kPortrait | kWatch},
                                         {"--fill", OfFrame<SetFill>, kPortrait | kWatch},
                                         {"--actions", Shared<SetActions>, kPortrait | kWatch},
                                         {"--tolerance", SetTolerance, kPortrait | kWatch},
                                         {"--rotate", SetRotation, kPortrait | kWatch},
                                         {"--steps", SetSteps, kPortrait},
                                         {"--quality", OfFile<SetQuality>, kPortrait | kWatch},
                                         {"--chroma", OfFile<SetChroma>, kPortrait | kWatch},
                                         {"--dpi", OfFile<SetDpi>, kPortrait | kWatch},
                                         {"--max-kb", OfFile<SetMostKilobytes>, kPortrait | kWatch},
                                         {"--min-kb", OfFile<SetLeastKilobytes>, kPortrait | kWatch},
                                         {"--face", OfFace<SetFace>, kPortrait | kCheck},
                                         {"--corrections", OfFace<SetCorrections>, kPortrait | kCheck},
                                         {"--sheet", OfFace<SetSheet>, kPortrait},
                                         {"--files-from", SetFilesFrom, kPortrait | kLooking},
                                         {"--report", SetReport, kPortrait | kLooking | kWatch},
                                         {"--shard", SetShard, kPortrait | kLooking | kWatch},
                                         {"--jobs", SetJobs, kPortrait | kLooking | kWatch},
                                         {"--timeout", SetTimeout, kPortrait | kLooking | kWatch},
                                         {"--memory", SetMemory, kPortrait | kLooking | kWatch}};

struct FlagOption {
    const char* name;
    bool& (*flag)(Options& options);
    unsigned commands;
};

constexpr FlagOption kFlagOptions[] = {
    {"-r", [](Options& o) -> bool& { return o.recursive; }, kPortrait | kLooking},
    {"--recursive", [](Options& o) -> bool& { return o.recursive; }, kPortrait | kLooking},
    {"--json", [](Options& o) -> bool& { return o.json; }, kPortrait | kLooking | kInfo | kWatch | kDocuments},
    {"--quiet", [](Options& o) -> bool& { return o.quiet; }, kPortrait | kLooking | kWatch},
    {"--all", [](Options& o) -> bool& { return o.allGroups; }, kDetect},
    {"--force", [](Options& o) -> bool& { return o.force; }, kPortrait | kLooking | kJoin | kWatch},
    {"--allow-edits", [](Options& o) -> bool& { return o.allowEdits; }, kPortrait | kWatch},
    {"--keep-metadata", [](Options& o) -> bool& { return o.keepMetadata; }, kPortrait | kWatch},
    {"--resume", [](Options& o) -> bool& { return o.resume; }, kPortrait}};

unsigned BitOf(Command command) {
    switch (command) {
    case Command::portrait:
        return kPortrait;
    case Command::detect:
        return kDetect;
    case Command::check:
        return kCheck;
    case Command::joinReports:
        return kJoin;
    case Command::watch:
        return kWatch;
    case Command::documents:
        return kDocuments;
    default:
        return kInfo;
    }
}

/// Walks the arguments after the command.
class Reader {
public:
    Reader(const std::vector<std::string>& arguments, Options* options, std::string* error)
        : arguments_(arguments), options_(options), error_(error), command_(BitOf(options->command)) {}

    bool Run() {
        for (at_ = command_ == kJoin ? 2 : 1; at_ < arguments_.size(); ++at_) {
            if (!Take(arguments_[at_])) return false;
        }
        // Asking for a turn asks for the action that does it, whatever the order of the two options.
        if (turned_) options_->actions.rotation = true;
        return true;
    }

private:
    bool Take(const std::string& argument) {
        if (onlyPhotos_ || argument.size() < 2 || argument[0] != '-') {
            options_->photos.push_back(argument);
            return true;
        }
        if (argument == "--") return onlyPhotos_ = true;
        if (argument == "--help" || argument == "-h") {
            options_->command = Command::help;
            return true;
        }
        for (const FlagOption& option : kFlagOptions) {
            if (argument == option.name && (option.commands & command_) != 0) return option.flag(*options_) = true;
        }
        return TakeValue(argument);
    }

    bool TakeValue(const std::string& argument) {
        const std::size_t equals = argument.find('=');
        const std::string name = argument.substr(0, equals);
        for (const ValueOption& option : kValueOptions) {
            if (name != option.name || (option.commands & command_) == 0) continue;
            if (name == "--rotate") turned_ = true;
            if (equals != std::string::npos) return option.set(argument.substr(equals + 1), options_, error_);
            if (++at_ < arguments_.size()) return option.set(arguments_[at_], options_, error_);
            *error_ = "'" + name + "' wants a value";
            return false;
        }
        return Unknown(argument);
    }

    bool Unknown(const std::string& argument) {
        *error_ = "'" + arguments_[0] + "' knows no option '" + argument + "'";
        return false;
    }

    const std::vector<std::string>& arguments_;
    Options* options_;
    std::string* error_;
    const unsigned command_;
    std::size_t at_ = 0;
    bool onlyPhotos_ = false;
    bool turned_ = false;
};

bool FindCommand(const std::string& name, Command* command) {
    if (name == "help" || name == "--help" || name == "-h") {
        *command = Command::help;
    } else if (name == "version" || name == "--version") {
        *command = Command::version;
    } else if (name == "info") {
        *command = Command::info;
    } else if (name == "detect") {
        *command = Command::detect;
    } else if (name == "check") {
        *command = Command::check;
    } else if (name == "portrait") {
        *command = Command::portrait;
    } else if (name == "watch") {
        *command = Command::watch;
    } else if (name == "documents") {
        *command = Command::documents;
    } else if (name == "report") {
        *command = Command::joinReports;
    } else if (name == "print") {
        *command = Command::print;
    } else if (name == kWorkerCommand) {
        *command = Command::worker;
    } else {
        return false;
    }
    return true;
}

/// The names of the outputs are those of the pattern, where there is one.
const std::string& NameOfFiles(const Options& options) {
    return options.outputName.empty() ? options.output : options.outputName;
}

bool CheckFile(const Options& options, std::string* error) {
    return CheckFileSettings(options, NameOfFiles(options), error);
}

/// What no single option tells.
bool CheckRun(const std::string& command, const Options& options, std::string* error) {
    if (options.photos.empty() && options.filesFrom.empty()) {
        *error = "'" + command + "' wants at least one photo";
    } else if (options.command == Command::portrait && options.output.empty()) {
        *error = "'portrait' wants -o and a file or a folder";
    } else if (options.resume && !options.steps.empty()) {
        *error = "--resume does not know of the pictures of --steps; give one of them";
    } else if (options.face && !options.corrections.empty()) {
        *error = "--face is for one photo and --corrections for many; give one of them";
    } else {
        return options.command != Command::portrait || CheckFile(options, error);
    }
    return false;
}

bool CheckWatch(const Options& options, std::string* error) {
    if (options.photos.size() != 1) {
        *error = "'watch' wants one folder";
    } else if (options.output.empty()) {
        *error = "'watch' wants -o and a folder";
    } else if (options.outputName.find("{number}") != std::string::npos) {
        *error = "--output-name: photographs that arrive have no {number}";
    } else {
        return CheckFile(options, error);
    }
    return false;
}

bool CheckJoin(const Options& options, std::string* error) {
    if (options.photos.empty()) {
        *error = "'report join' wants at least one report";
        return false;
    }
    if (!IsReportName(options.output)) {
        *error = "'report join' wants -o and a file named .csv or .jsonl";
        return false;
    }
    return true;
}

} // namespace

bool ParseOptions(const std::vector<std::string>& arguments, Options* options, std::string* error) {
    *options = Options();
    if (arguments.empty()) {
        *error = "no command; 'orvane help' tells them all";
        return false;
    }
    if (!FindCommand(arguments[0], &options->command)) {
        *error = "no command '" + arguments[0] + "'; 'orvane help' tells them all";
        return false;
    }
    if (options->command == Command::help || options->command == Command::version) return true;
    if (options->command == Command::worker) return true;
    if (options->command == Command::print) {
        if (!ParsePrintOptions({arguments.begin() + 1, arguments.end()}, &options->print, error)) return false;
        if (options->print.help) options->command = Command::help;
        return true;
    }
    if (options->command == Command::joinReports && (arguments.size() < 2 || arguments[1] != "join")) {
        if (arguments.size() == 2 && (arguments[1] == "--help" || arguments[1] == "-h")) {
            options->command = Command::help;
            return true;
        }
        *error = "'report' wants 'join' and reports";
        return false;
    }
    if (!Reader(arguments, options, error).Run()) return false;
    if (options->command == Command::help) return true;
    if (options->command == Command::info) {
        if (options->photos.empty()) return true;
        *error = "'info' takes no photo";
        return false;
    }
    if (options->command == Command::documents) {
        if (options->photos.size() < 2) return true;
        *error = "'documents' takes one table, or none";
        return false;
    }
    const bool makesPortraits = options->command == Command::portrait || options->command == Command::watch;
    if (makesPortraits && !FinishFrame(*options, options->dpi, options, error)) return false;
    if (makesPortraits) SetFileOfFrame(*options, NameOfFiles(*options), options);
    if (options->command == Command::watch) return CheckWatch(*options, error);
    return options->command == Command::joinReports ? CheckJoin(*options, error)
                                                    : CheckRun(arguments[0], *options, error);
}

} // namespace orvane::tools
