#include "tools/orvane/print_command.h"

#include "tools/orvane/commands.h"
#include "tools/print/sheet_pdf.h"
#include "tools/print/sheet_picture.h"
#include "tools/support/file_identity.h"
#include "tools/support/picture_io.h"
#include "tools/support/utf8.h"
#include "tools/support/whole_file.h"

#include <utility>

namespace orvane::tools {
namespace {

bool Read(const PrintOptions& options, std::vector<PrintedPortrait>* portraits, std::string* error) {
    for (const std::string& path : options.portraits) {
        PrintedPortrait portrait;
        if (!ReadPortrait(path, options.size, &portrait, error)) {
            *error = path + ": " + *error;
            return false;
        }
        if (!portrait.warning.empty()) PrintError(OneLine(path) + ": warning: " + portrait.warning);
        portraits->push_back(std::move(portrait));
    }
    return true;
}

/// A sheet never takes the place of a portrait that is on it.
bool IsPortrait(const PrintOptions& options) {
    const std::optional<FileIdentity> output = IdentifyFile(options.output);
    if (!output) return false;
    for (const std::string& path : options.portraits) {
        if (IdentifyFile(path) == output) return true;
    }
    return false;
}

std::optional<SheetPlan> Plan(const PrintOptions& options, const std::vector<PrintedPortrait>& portraits,
                              std::string* error) {
    const int32 dpi = options.dpi.value_or(kPlainSheetDpi);
    const bool pixels = !IsPdfName(options.output);
    SheetSettings settings = options.sheets;
    if (pixels) settings.gap = InWholePixels(settings.gap, dpi);
    std::vector<PaperSize> sizes;
    sizes.reserve(portraits.size());
    for (const PrintedPortrait& portrait : portraits) {
        sizes.push_back(pixels ? InWholePixels(portrait.size, dpi) : portrait.size);
    }
    std::size_t tooLarge = 0;
    std::optional<SheetPlan> plan = PlanSheets(sizes, settings, &tooLarge);
    if (!plan) {
        const PrintedPortrait& portrait = portraits[tooLarge];
        *error = portrait.path + ": is " + SizeText(portrait.size) + ", too large for paper of " +
                 SizeText(settings.paper) + " with its margins";
    } else if (pixels && plan->sheets.size() > 1) {
        *error = "the portraits take " + std::to_string(plan->sheets.size()) + " sheets; only a .pdf has several";
        plan.reset();
    }
    return plan;
}

bool MakeSheets(const PrintOptions& options, const SheetPlan& plan, std::vector<PrintedPortrait>& portraits,
                std::string* file, std::string* error) {
    if (IsPdfName(options.output)) return MakePdf(plan, portraits, options.cutMarks, file, error);
    const int32 dpi = options.dpi.value_or(kPlainSheetDpi);
    Picture sheet;
    PortraitFile settings;
    settings.settings.dpi = dpi;
    return DrawSheet(plan.sheets[0], plan.paper, portraits, dpi, options.cutMarks, &sheet, error) &&
           EncodePicture(options.output, std::move(sheet), settings, file, error);
}

std::string Told(const PrintOptions& options, const SheetPlan& plan) {
    std::size_t count = 0;
    for (const Sheet& sheet : plan.sheets) count += sheet.size();
    const auto many = [](std::size_t n, const std::string& what) {
        return std::to_string(n) + " " + what + (n == 1 ? "" : "s");
    };
    return OneLine(options.output) + ": " + many(plan.sheets.size(), "sheet") + " of " + SizeText(plan.paper) +
           " with " + many(count, "portrait") + "; print at 100 %\n";
}

} // namespace

ExitCode RunPrint(const PrintOptions& options) {
    std::vector<PrintedPortrait> portraits;
    std::string error;
    std::string file;
    if (IsPortrait(options)) {
        PrintError("the output '" + options.output + "' is one of the portraits");
        return kExitError;
    }
    if (!Read(options, &portraits, &error)) {
        PrintError(error);
        return kExitError;
    }
    const std::optional<SheetPlan> plan = Plan(options, portraits, &error);
    if (!plan) {
        PrintError(error);
        return kExitError;
    }
    if (!MakeSheets(options, *plan, portraits, &file, &error) ||
        !WriteWholeFile(options.output, file, options.force, &error)) {
        PrintError("the output '" + options.output + "' " + error);
        return kExitError;
    }
    return Print(Told(options, *plan)) ? kExitGood : kExitError;
}

} // namespace orvane::tools
