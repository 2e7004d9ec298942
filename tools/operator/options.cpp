#include "tools/operator/options.h"

#include <cstddef>
#include <limits>

namespace orvane::tools {
namespace {

bool IsHelp(const std::string& argument) { return argument == "help" || argument == "--help" || argument == "-h"; }

bool SetOutput(const std::string& text, OperatorOptions* options, std::string* error) {
    options->output = text;
    if (text.empty()) *error = "-o wants a file";
    return !text.empty();
}

bool SetLanguage(const std::string& text, OperatorOptions* options, std::string* error) {
    options->language = text;
    if (text.empty()) *error = "--language wants the name of a file in the library's folder";
    return !text.empty();
}

bool SetDevice(const std::string& text, OperatorOptions* options, std::string* error) {
    constexpr int32 kMost = std::numeric_limits<int32>::max();
    const std::optional<int32> device = NumberWithin(text, 0, kMost);
    if (device) {
        options->device = *device;
    } else {
        *error = "--device wants a whole number, " + Range(0, kMost) + ", not '" + text + "'";
    }
    return device.has_value();
}

/// A setting that other programs know too.
template <bool set(const std::string& text, PortraitSettings* settings, std::string* error)>
bool Shared(const std::string& text, OperatorOptions* options, std::string* error) {
    return set(text, options, error);
}

/// Who knows an option: commands as bits.
enum Knows : unsigned { kReview = 1, kLive = 2, kDevices = 4 };

struct CommandName {
    const char* name;
    OperatorCommand command;
    Knows knows;
};

constexpr CommandName kCommands[] = {{"review", OperatorCommand::review, kReview},
                                     {"live", OperatorCommand::live, kLive},
                                     {"devices", OperatorCommand::devices, kDevices}};

struct ValueOption {
    const char* name;
    unsigned known;
    bool (*set)(const std::string& text, OperatorOptions* options, std::string* error);
};

constexpr ValueOption kValueOptions[] = {{"-o", kReview | kLive, SetOutput},
                                         {"--output", kReview | kLive, SetOutput},
                                         {"--actions", kReview | kLive, Shared<SetActions>},
                                         {"--size", kReview | kLive, Shared<SetSize>},
                                         {"--crop-ratio", kReview | kLive, Shared<SetCropRatio>},
                                         {"--language", kReview | kLive, SetLanguage},
                                         {"--device", kLive, SetDevice}};

struct Flag {
    const char* name;
    unsigned known;
    bool OperatorOptions::*value;
};

constexpr Flag kFlags[] = {{"--hidden", kReview, &OperatorOptions::hidden},
                           {"--force", kReview | kLive, &OperatorOptions::force},
                           {"--json", kDevices, &OperatorOptions::json}};

/// Walks the arguments after the command.
class Reader {
public:
    Reader(const CommandName& command, const std::vector<std::string>& arguments, OperatorOptions* options,
           std::string* error)
        : command_(command), arguments_(arguments), options_(options), error_(error) {
        options->command = command.command;
    }

    bool Run() {
        for (at_ = 1; at_ < arguments_.size(); ++at_) {
            if (!Take(arguments_[at_])) return false;
        }
        if (options_->command == OperatorCommand::help || command_.knows == kDevices) return true;
        if (command_.knows == kReview && photos_ != 1) return Refuse("wants one photo");
        return !options_->output.empty() || Refuse("wants -o and a file");
    }

private:
    bool Take(const std::string& argument) {
        if (onlyPhotos_ || argument.size() < 2 || argument[0] != '-') return TakePhoto(argument);
        if (argument == "--") return onlyPhotos_ = true;
        if (IsHelp(argument)) {
            options_->command = OperatorCommand::help;
            return true;
        }
        for (const Flag& flag : kFlags) {
            if (argument == flag.name && (flag.known & command_.knows) != 0) return options_->*flag.value = true;
        }
        return TakeValue(argument);
    }

    bool TakePhoto(const std::string& argument) {
        if (command_.knows != kReview) return Refuse("takes options alone, not '" + argument + "'");
        options_->photo = argument;
        ++photos_;
        return true;
    }

    bool TakeValue(const std::string& argument) {
        const std::size_t equals = argument.find('=');
        const std::string name = argument.substr(0, equals);
        for (const ValueOption& option : kValueOptions) {
            if (name != option.name || (option.known & command_.knows) == 0) continue;
            if (equals != std::string::npos) return option.set(argument.substr(equals + 1), options_, error_);
            if (++at_ < arguments_.size()) return option.set(arguments_[at_], options_, error_);
            *error_ = "'" + name + "' wants a value";
            return false;
        }
        return Refuse("knows no option '" + argument + "'");
    }

    /// What the command does not take.
    bool Refuse(const std::string& what) {
        *error_ = std::string("'") + command_.name + "' " + what;
        return false;
    }

    const CommandName& command_;
    const std::vector<std::string>& arguments_;
    OperatorOptions* options_;
    std::string* error_;
    std::size_t at_ = 0;
    std::size_t photos_ = 0;
    bool onlyPhotos_ = false;
};

} // namespace

bool ParseOperatorOptions(const std::vector<std::string>& arguments, OperatorOptions* options, std::string* error) {
    *options = OperatorOptions();
    const std::string first = arguments.empty() ? "" : arguments[0];
    if (IsHelp(first)) return true;
    for (const CommandName& command : kCommands) {
        if (first == command.name) return Reader(command, arguments, options, error).Run();
    }
    *error = (arguments.empty() ? "no command" : "no command '" + first + "'") +
             std::string("; 'orvane-operator help' tells them all");
    return false;
}

} // namespace orvane::tools
