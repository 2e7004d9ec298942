// Reading crops and cutting windows.
#include "tools/train/face_crops.h"

#include "tools/train/cascade.h"
#include "tools/train/cover.h"
#include "tools/train/table.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <map>
#include <sstream>

namespace orvane::train {
namespace {

constexpr int kUnusableFlags = 4 | 8; // part of the box outside the picture; enlarged
constexpr std::size_t kCropBytes = static_cast<std::size_t>(kCropSide) * kCropSide;
constexpr uint64 kHeldShare = 5; // one person in five

std::vector<uint8> Upended(const uint8* topFirst) {
    std::vector<uint8> rows(kCropBytes);
    for (int32 y = 0; y < kCropSide; ++y) {
        std::copy_n(topFirst + PixelIndex(0, kCropSide - 1 - y, kCropSide), kCropSide,
                    rows.data() + PixelIndex(0, y, kCropSide));
    }
    return rows;
}

uint64 HashOf(const std::string& text) {
    uint64 hash = 1469598103934665603ull;
    for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211ull;
    return hash;
}

double PixelAt(const CropPlane& crop, double x, double y, bool nearest) {
    const double last = kCropSide - 1;
    x = std::clamp(x, 0.0, last);
    y = std::clamp(y, 0.0, last);
    const auto at = [&](int column, int row) { return crop[PixelIndex(column, row, kCropSide)]; };
    if (nearest) return at(static_cast<int>(x + 0.5), static_cast<int>(y + 0.5));
    const int x0 = std::min(static_cast<int>(x), kCropSide - 2);
    const int y0 = std::min(static_cast<int>(y), kCropSide - 2);
    const double u = x - x0;
    const double v = y - y0;
    return (at(x0, y0) * (1 - u) + at(x0 + 1, y0) * u) * (1 - v) +
           (at(x0, y0 + 1) * (1 - u) + at(x0 + 1, y0 + 1) * u) * v;
}

/// Adds `amount` of each pixel's difference to the mean of its four neighbours.
void Sharpen(std::vector<double>& plane, ImageSize size, double amount) {
    const std::vector<double> before = plane;
    for (int32 y = 1; y + 1 < size.height; ++y) {
        for (int32 x = 1; x + 1 < size.width; ++x) {
            const auto i = PixelIndex(x, y, size.width);
            const auto row = static_cast<std::size_t>(size.width);
            plane[i] +=
                amount * (before[i] - 0.25 * (before[i - 1] + before[i + 1] + before[i - row] + before[i + row]));
        }
    }
}

/// The rows of usable crops, in their order.
std::vector<std::size_t> ChosenRows(const Table& table, const CropChoice& choice) {
    std::vector<std::size_t> rows;
    for (std::size_t i = 0; i < table.Rows(); ++i) {
        if (table.Text(i, "split") != "train") continue;
        if (choice.classes.find(table.Text(i, "class")) == std::string::npos) continue;
        if ((static_cast<int>(table.Number(i, "flags")) & kUnusableFlags) == 0) rows.push_back(i);
    }
    for (const auto& [source, most] : choice.most) {
        std::vector<std::pair<uint64, std::size_t>> lots;
        for (const std::size_t i : rows) {
            if (table.Text(i, "source") == source) lots.push_back({Random({HashOf(table.Text(i, "index"))}).Next(), i});
        }
        if (static_cast<double>(lots.size()) <= most) continue;
        std::sort(lots.begin(), lots.end());
        std::vector<bool> out(table.Rows());
        for (auto at = static_cast<std::size_t>(most); at < lots.size(); ++at) out[lots[at].second] = true;
        std::erase_if(rows, [&](std::size_t i) { return out[i]; });
    }
    return rows;
}

double NumberOf(const SourceNumbers& numbers, const std::string& source) {
    const auto number = numbers.find(source);
    return number == numbers.end() ? 1.0 : number->second;
}

} // namespace

bool ReadSourceNumbers(const std::string& text, SourceNumbers& numbers) {
    numbers.clear();
    std::istringstream parts(text);
    for (std::string part; std::getline(parts, part, ',');) {
        const std::size_t sign = part.find('=');
        if (sign == 0 || sign == std::string::npos) return false;
        char* end = nullptr;
        const double number = std::strtod(part.c_str() + sign + 1, &end);
        if (end == part.c_str() + sign + 1 || *end != '\0' || !(number > 0.0) || number > 1e9) return false;
        if (!numbers.emplace(part.substr(0, sign), number).second) return false;
    }
    return true;
}

CropSet ReadCrops(const std::string& folder, const CropChoice& choice) {
    Table table;
    std::vector<uint8> bytes;
    if (!table.Read(folder + "/positives.csv")) return {{}, "cannot read positives.csv"};
    if (!ReadFile(folder + "/positives.bin", bytes)) return {{}, "cannot read positives.bin"};

    CropSet set;
    std::vector<std::string> sources;
    std::map<std::string, int> counts;
    for (const std::size_t i : ChosenRows(table, choice)) {
        const auto index = static_cast<std::size_t>(table.Number(i, "index"));
        if ((index + 1) * kCropBytes > bytes.size()) return {{}, "positives.bin is shorter than its table"};
        FaceCrop crop;
        crop.pixels = Upended(bytes.data() + index * kCropBytes);
        crop.held = Random({HashOf(table.Text(i, "source") + "/" + table.Text(i, "person"))}).Next() % kHeldShare == 0;
        set.crops.push_back(std::move(crop));
        sources.push_back(table.Text(i, "source"));
        ++counts[sources.back()];
    }
    for (std::size_t i = 0; i < sources.size(); ++i) {
        set.crops[i].draw = std::pow(static_cast<double>(counts[sources[i]]), choice.balance - 1.0) *
                            NumberOf(choice.favour, sources[i]);
        set.crops[i].source = static_cast<std::size_t>(std::distance(counts.begin(), counts.find(sources[i])));
    }
    if (set.crops.empty()) set.error = "no crop of these classes";
    return set;
}

bool Names(const std::string& list, const std::string& name) {
    return !name.empty() && ("," + list + ",").find("," + name + ",") != std::string::npos;
}

CropLottery::CropLottery(const std::vector<FaceCrop>& crops, bool held) : crops_(&crops) {
    double total = 0.0;
    for (std::size_t i = 0; i < crops.size(); ++i) {
        if (crops[i].held != held) continue;
        members_.push_back(i);
        cumulated_.push_back(total += crops[i].draw);
    }
}

const FaceCrop& CropLottery::Draw(Random& random) const {
    const double ticket = random.Unit() * cumulated_.back();
    const auto at = std::upper_bound(cumulated_.begin(), cumulated_.end(), ticket) - cumulated_.begin();
    return (*crops_)[members_[std::min(static_cast<std::size_t>(at), members_.size() - 1)]];
}

Window CutWindow(const FaceCrop& crop, const Framing& framing, ImageSize windowSize, Random& random) {
    const double side = kCropBoxSide * framing.windowToBox * std::exp(random.Between(-framing.scale, framing.scale));
    const double middle = 0.5 * (kCropSide - 1);
    const double centreX = middle + random.Between(-framing.shift, framing.shift) * side;
    const double centreY = middle + random.Between(-framing.shift, framing.shift) * side;
    const double angle = framing.roll * random.Normal() * 3.14159265358979323846 / 180.0;
    const bool mirror = random.Below(2) != 0;
    const bool nearest = random.Below(2) != 0;
    const double narrowed = 1.0 + random.Between(0.0, framing.yaw);
    const double turned = random.Between(-framing.yaw, framing.yaw) / windowSize.width;
    CropPlane face(crop.pixels.begin(), crop.pixels.end());
    if (random.Unit() < framing.covered) Cover(face, random);
    if (random.Unit() < framing.relit) Relight(face, random);
    const double step = side / windowSize.width;
    const double c = std::cos(angle) * step;
    const double s = std::sin(angle) * step;

    std::vector<double> plane(PixelCount(windowSize));
    for (int32 y = 0; y < windowSize.height; ++y) {
        for (int32 x = 0; x < windowSize.width; ++x) {
            const double across = (mirror ? windowSize.width - 1 - x : x) - 0.5 * (windowSize.width - 1);
            const double u = across * (narrowed + turned * across);
            const double v = y - 0.5 * (windowSize.height - 1);
            plane[PixelIndex(x, y, windowSize.width)] =
                PixelAt(face, centreX + c * u - s * v, centreY + s * u + c * v, nearest);
        }
    }
    if (random.Below(2) != 0) Sharpen(plane, windowSize, random.Between(0.0, 1.0));

    const double gamma = std::exp(random.Between(-0.35, 0.35));
    const double gain = std::exp(random.Between(-0.4, 0.2));
    const double slopeX = random.Between(-0.2, 0.2) / windowSize.width;
    const double slopeY = random.Between(-0.2, 0.2) / windowSize.height;
    const double noise = random.Below(2) != 0 ? random.Between(0.0, 7.0) : 0.0;
    Window window(plane.size());
    for (int32 y = 0; y < windowSize.height; ++y) {
        for (int32 x = 0; x < windowSize.width; ++x) {
            const auto i = PixelIndex(x, y, windowSize.width);
            const double light =
                gain * (1.0 + slopeX * (x - 0.5 * windowSize.width) + slopeY * (y - 0.5 * windowSize.height));
            const double value =
                255.0 * std::pow(std::max(plane[i], 0.0) / 255.0, gamma) * light + noise * random.Normal();
            window[i] = static_cast<uint8>(std::clamp(value + 0.5, 0.0, 255.0));
        }
    }
    return window;
}

} // namespace orvane::train
