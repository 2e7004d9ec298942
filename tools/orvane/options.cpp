#include "tools/orvane/options.h"

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

struct ValueOption {
    const char* name;
    bool (*set)(const std::string& text, Options* options, std::string* error);
};

/// A setting that other programs know too.
template <bool set(const std::string& text, PortraitSettings* settings, std::string* error)>
bool Shared(const std::string& text, Options* options, std::string* error) {
    return set(text, options, error);
}

/// All of them belong to `portrait`.
constexpr ValueOption kValueOptions[] = {{"-o", SetOutput},
                                         {"--output", SetOutput},
                                         {"--size", Shared<SetSize>},
                                         {"--crop-ratio", Shared<SetCropRatio>},
                                         {"--actions", Shared<SetActions>},
                                         {"--tolerance", SetTolerance},
                                         {"--rotate", SetRotation},
                                         {"--steps", SetSteps}};

/// Walks the arguments after the command.
class Reader {
public:
    Reader(const std::vector<std::string>& arguments, Options* options, std::string* error)
        : arguments_(arguments), options_(options), error_(error) {}

    bool Run() {
        for (at_ = 1; at_ < arguments_.size(); ++at_) {
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
        if (argument == "--json") return options_->json = true;
        const bool portrait = arguments_[0] == "portrait";
        if (argument == "--force" && portrait) return options_->force = true;
        return portrait ? TakeValue(argument) : Unknown(argument);
    }

    bool TakeValue(const std::string& argument) {
        const std::size_t equals = argument.find('=');
        const std::string name = argument.substr(0, equals);
        for (const ValueOption& option : kValueOptions) {
            if (name != option.name) continue;
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
    } else if (name == "portrait") {
        *command = Command::portrait;
    } else {
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
    if (!Reader(arguments, options, error).Run()) return false;
    if (options->command == Command::help) return true;
    if (options->command == Command::info) {
        if (options->photos.empty()) return true;
        *error = "'info' takes no photo";
        return false;
    }
    if (options->photos.empty()) {
        *error = "'" + arguments[0] + "' wants at least one photo";
        return false;
    }
    if (options->command == Command::portrait && options->output.empty()) {
        *error = "'portrait' wants -o and a file or a folder";
        return false;
    }
    return true;
}

} // namespace orvane::tools
