#include "tools/orvane/print_options.h"

#include "tools/support/file_options.h"
#include "tools/support/picture_io.h"
#include "tools/support/portrait_options.h"

#include <cctype>
#include <cstddef>

namespace orvane::tools {
namespace {

constexpr double kLeastPaperSide = 20;
constexpr double kMostPaperSide = 2000;
constexpr double kMostSpace = 100;

bool SetOutput(const std::string& text, PrintOptions* options, std::string* error) {
    options->output = text;
    if (IsPdfName(text) || IsWritablePictureName(text)) return true;
    *error = "-o wants a file named .pdf, .png, .jpg, .tif or .bmp, not '" + text + "'";
    return false;
}

bool SetPaper(const std::string& text, PrintOptions* options, std::string* error) {
    const auto isSide = [](double side) { return side >= kLeastPaperSide && side <= kMostPaperSide; };
    const std::optional<PaperSize> paper = PaperOf(text);
    if (paper && isSide(paper->width) && isSide(paper->height)) {
        options->sheets.paper = *paper;
        return true;
    }
    *error = "--paper wants A4, A5, A6, letter or a size such as 10x15cm, 4x6in or 102x152mm, each side from 20 to "
             "2000 mm, not '" +
             text + "'";
    return false;
}

bool SetCopies(const std::string& text, PrintOptions* options, std::string* error) {
    options->sheets.copies = NumberWithin(text, 1, kMostCopies);
    if (options->sheets.copies) return true;
    *error = "--copies wants a number, " + Range(1, kMostCopies) + ", not '" + text + "'";
    return false;
}

bool SetSpace(const char* option, const std::string& text, double* space, std::string* error) {
    const std::optional<double> length = LengthOf(text);
    if (length && *length <= kMostSpace) {
        *space = *length;
        return true;
    }
    *error = std::string(option) + " wants a length such as 2mm, up to 100mm, not '" + text + "'";
    return false;
}

bool SetGap(const std::string& text, PrintOptions* options, std::string* error) {
    return SetSpace("--gap", text, &options->sheets.gap, error);
}

bool SetMargin(const std::string& text, PrintOptions* options, std::string* error) {
    return SetSpace("--margin", text, &options->sheets.margin, error);
}

bool SetPrintedSize(const std::string& text, PrintOptions* options, std::string* error) {
    options->size = SizeOf(text);
    if (!options->size) *error = "--size wants a portrait's size such as 35x45mm, not '" + text + "'";
    return options->size.has_value();
}

bool SetSheetDpi(const std::string& text, PrintOptions* options, std::string* error) {
    FileSettings settings;
    if (!SetDpi(text, &settings, error)) return false;
    options->dpi = settings.dpi;
    return true;
}

struct PrintOption {
    const char* name;
    bool (*set)(const std::string& text, PrintOptions* options, std::string* error);
};

constexpr PrintOption kPrintOptions[] = {{"-o", SetOutput},          {"--output", SetOutput}, {"--paper", SetPaper},
                                         {"--copies", SetCopies},    {"--gap", SetGap},       {"--margin", SetMargin},
                                         {"--size", SetPrintedSize}, {"--dpi", SetSheetDpi}};

bool TakeFlag(const std::string& argument, PrintOptions* options) {
    if (argument == "--cut-marks") {
        options->cutMarks = true;
    } else if (argument == "--force") {
        options->force = true;
    } else if (argument == "--help" || argument == "-h") {
        options->help = true;
    } else {
        return false;
    }
    return true;
}

/// The option at `*at`, with its value behind it or behind an equals sign.
bool TakeOption(const std::vector<std::string>& arguments, std::size_t* at, PrintOptions* options, std::string* error) {
    const std::string& argument = arguments[*at];
    if (TakeFlag(argument, options)) return true;
    const std::size_t equals = argument.find('=');
    const std::string name = argument.substr(0, equals);
    for (const PrintOption& option : kPrintOptions) {
        if (name != option.name) continue;
        if (equals != std::string::npos) return option.set(argument.substr(equals + 1), options, error);
        if (++*at < arguments.size()) return option.set(arguments[*at], options, error);
        *error = "'" + name + "' wants a value";
        return false;
    }
    *error = "'print' knows no option '" + argument + "'";
    return false;
}

} // namespace

bool IsPdfName(const std::string& path) {
    std::string end = path.size() < 4 ? "" : path.substr(path.size() - 4);
    for (char& c : end) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return end == ".pdf";
}

bool ParsePrintOptions(const std::vector<std::string>& arguments, PrintOptions* options, std::string* error) {
    bool onlyPortraits = false;
    for (std::size_t at = 0; at < arguments.size(); ++at) {
        const std::string& argument = arguments[at];
        if (onlyPortraits || argument.size() < 2 || argument[0] != '-') {
            options->portraits.push_back(argument);
        } else if (argument == "--") {
            onlyPortraits = true;
        } else if (!TakeOption(arguments, &at, options, error)) {
            return false;
        }
    }
    if (options->help) return true;
    if (options->portraits.empty()) {
        *error = "'print' wants at least one portrait";
    } else if (options->output.empty()) {
        *error = "'print' wants -o and a file";
    } else if (options->dpi && IsPdfName(options->output)) {
        *error = "--dpi is for sheets in pixels; a .pdf has the pixels of its portraits";
    } else {
        return true;
    }
    return false;
}

} // namespace orvane::tools
