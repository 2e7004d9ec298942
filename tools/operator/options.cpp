#include "tools/operator/options.h"

#include <cstddef>

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

/// A setting that other programs know too.
template <bool set(const std::string& text, PortraitSettings* settings, std::string* error)>
bool Shared(const std::string& text, OperatorOptions* options, std::string* error) {
    return set(text, options, error);
}

struct ValueOption {
    const char* name;
    bool (*set)(const std::string& text, OperatorOptions* options, std::string* error);
};

constexpr ValueOption kValueOptions[] = {{"-o", SetOutput},
                                         {"--output", SetOutput},
                                         {"--actions", Shared<SetActions>},
                                         {"--size", Shared<SetSize>},
                                         {"--crop-ratio", Shared<SetCropRatio>},
                                         {"--language", SetLanguage}};

/// Walks the arguments after the command.
class Reader {
public:
    Reader(const std::vector<std::string>& arguments, OperatorOptions* options, std::string* error)
        : arguments_(arguments), options_(options), error_(error) {}

    bool Run() {
        for (at_ = 1; at_ < arguments_.size(); ++at_) {
            if (!Take(arguments_[at_])) return false;
        }
        if (options_->command == OperatorCommand::help) return true;
        if (photos_ != 1) return Refuse("'review' wants one photo");
        return !options_->output.empty() || Refuse("'review' wants -o and a file");
    }

private:
    bool Take(const std::string& argument) {
        if (onlyPhotos_ || argument.size() < 2 || argument[0] != '-') {
            options_->photo = argument;
            ++photos_;
            return true;
        }
        if (argument == "--") return onlyPhotos_ = true;
        if (IsHelp(argument)) {
            options_->command = OperatorCommand::help;
            return true;
        }
        if (argument == "--hidden") return options_->hidden = true;
        if (argument == "--force") return options_->force = true;
        return TakeValue(argument);
    }

    bool TakeValue(const std::string& argument) {
        const std::size_t equals = argument.find('=');
        const std::string name = argument.substr(0, equals);
        for (const ValueOption& option : kValueOptions) {
            if (name != option.name) continue;
            if (equals != std::string::npos) return option.set(argument.substr(equals + 1), options_, error_);
            if (++at_ < arguments_.size()) return option.set(arguments_[at_], options_, error_);
            return Refuse("'" + name + "' wants a value");
        }
        return Refuse("'review' knows no option '" + argument + "'");
    }

    bool Refuse(const std::string& why) {
        *error_ = why;
        return false;
    }

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
    if (arguments.empty()) {
        *error = "no command; 'orvane-operator help' tells them all";
        return false;
    }
    if (IsHelp(arguments[0])) return true;
    if (arguments[0] != "review") {
        *error = "no command '" + arguments[0] + "'; 'orvane-operator help' tells them all";
        return false;
    }
    options->command = OperatorCommand::review;
    return Reader(arguments, options, error).Run();
}

} // namespace orvane::tools
