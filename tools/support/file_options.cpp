#include "tools/support/file_options.h"

#include "tools/support/density.h"
#include "tools/support/picture_format.h"
#include "tools/support/portrait_encoder.h"
#include "tools/support/portrait_options.h"

namespace orvane::tools {
namespace {

constexpr int32 kMostKilobytes = 100000;

bool SetKilobytes(const char* option, const std::string& text, std::uint64_t kilobyte,
                  std::optional<std::uint64_t>* bytes, std::string* error) {
    const std::optional<int32> value = NumberWithin(text, 1, kMostKilobytes);
    if (!value) {
        *error = std::string(option) + " wants kilobytes, " + Range(1, kMostKilobytes) + ", not '" + text + "'";
        return false;
    }
    *bytes = static_cast<std::uint64_t>(*value) * kilobyte;
    return true;
}

} // namespace

bool SetQuality(const std::string& text, FileSettings* settings, std::string* error) {
    settings->quality = NumberWithin(text, 1, 100);
    if (!settings->quality) *error = "--quality wants a number, " + Range(1, 100) + ", not '" + text + "'";
    return settings->quality.has_value();
}

bool SetChroma(const std::string& text, FileSettings* settings, std::string* error) {
    if (text == "444") {
        settings->chroma = Chroma::full;
    } else if (text == "422") {
        settings->chroma = Chroma::half;
    } else if (text == "420") {
        settings->chroma = Chroma::quarter;
    } else {
        *error = "--chroma knows 444, 422 and 420, not '" + text + "'";
        return false;
    }
    return true;
}

bool SetDpi(const std::string& text, FileSettings* settings, std::string* error) {
    settings->dpi = NumberWithin(text, kLeastDpi, kMostDpi);
    if (!settings->dpi) {
        *error = "--dpi wants pixels an inch, " + Range(kLeastDpi, kMostDpi) + ", not '" + text + "'";
    }
    return settings->dpi.has_value();
}

bool SetMostKilobytes(const std::string& text, FileSettings* settings, std::string* error) {
    return SetKilobytes("--max-kb", text, kCeilingKilobyte, &settings->mostBytes, error);
}

bool SetLeastKilobytes(const std::string& text, FileSettings* settings, std::string* error) {
    return SetKilobytes("--min-kb", text, kFloorKilobyte, &settings->leastBytes, error);
}

bool CheckFileSettings(const FileSettings& settings, const std::string& output, std::string* error) {
    if (settings.leastBytes && settings.mostBytes && *settings.leastBytes > *settings.mostBytes) {
        *error = "no file has at least " + std::to_string(*settings.leastBytes) + " bytes (--min-kb) and at most " +
                 std::to_string(*settings.mostBytes) + " (--max-kb)";
        return false;
    }
    return CanHaveSettings(FormatOfName(output).value_or(PictureFormat::png), settings, error);
}

} // namespace orvane::tools
