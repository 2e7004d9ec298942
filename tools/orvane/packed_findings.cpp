#include "tools/orvane/packed_findings.h"

namespace orvane::tools {
namespace {

/// More than any photo has.
constexpr std::int64_t kMostGroups = 1 << 20;

void PackOptional(const std::optional<double>& value, Packer* packer) {
    packer->Flag(value.has_value()).Real(value.value_or(0));
}

std::optional<double> UnpackOptional(Unpacker* unpacker) {
    const bool has = unpacker->Flag();
    const double value = unpacker->Real();
    return has ? std::optional<double>(value) : std::nullopt;
}

void PackBand(const Band& band, Packer* packer) {
    PackOptional(band.low, packer);
    PackOptional(band.high, packer);
}

Band UnpackBand(Unpacker* unpacker) {
    Band band;
    band.low = UnpackOptional(unpacker);
    band.high = UnpackOptional(unpacker);
    return band;
}

} // namespace

void PackFace(const std::optional<FaceBox>& face, Packer* packer) {
    const FaceBox box = face.value_or(FaceBox());
    packer->Flag(face.has_value());
    packer->Integer(box.x).Integer(box.y).Integer(box.width).Integer(box.height);
}

std::optional<FaceBox> UnpackFace(Unpacker* unpacker) {
    const bool has = unpacker->Flag();
    FaceBox box;
    for (int32* value : {&box.x, &box.y, &box.width, &box.height}) *value = static_cast<int32>(unpacker->Integer());
    return has ? std::optional<FaceBox>(box) : std::nullopt;
}

void PackFindings(const PhotoReport& report, Packer* packer) {
    packer->Integer(static_cast<std::int64_t>(report.groups.size()));
    for (const FaceGroup& group : report.groups) {
        PackFace(group.mean, packer);
        packer->Integer(group.hits).Integer(group.face).Flag(group.chosen);
    }
    packer->Flag(report.measures.has_value());
    if (!report.measures) return;
    for (const Measure& measure : *report.measures) {
        PackOptional(measure.value, packer);
        PackBand(measure.band, packer);
        packer->Text(measure.reason);
    }
}

bool UnpackFindings(Unpacker* unpacker, PhotoReport* report) {
    const std::int64_t groups = unpacker->Integer();
    if (groups < 0 || groups > kMostGroups) return false;
    for (std::int64_t i = 0; i < groups; ++i) {
        FaceGroup group;
        group.mean = UnpackFace(unpacker).value_or(FaceBox());
        group.hits = static_cast<int32>(unpacker->Integer());
        group.face = static_cast<int32>(unpacker->Integer());
        group.chosen = unpacker->Flag();
        report->groups.push_back(group);
    }
    if (!unpacker->Flag()) return true;
    report->measures.emplace();
    for (Measure& measure : *report->measures) {
        measure.value = UnpackOptional(unpacker);
        measure.band = UnpackBand(unpacker);
        measure.reason = unpacker->Text();
    }
    return true;
}

void PackDocument(const Document& document, Packer* packer) {
    packer->Text(document.name).Real(document.width).Real(document.height);
    PackBand(document.head, packer);
    PackBand(document.eyes, packer);
    PackBand(document.above, packer);
    packer->Integer(static_cast<std::int64_t>(document.headTop));
    packer->Integer(static_cast<std::int64_t>(document.background));
}

Document UnpackDocument(Unpacker* unpacker) {
    Document document;
    document.name = unpacker->Text();
    document.width = unpacker->Real();
    document.height = unpacker->Real();
    document.head = UnpackBand(unpacker);
    document.eyes = UnpackBand(unpacker);
    document.above = UnpackBand(unpacker);
    document.headTop = static_cast<HeadTop>(unpacker->Integer());
    document.background = static_cast<BackgroundRule>(unpacker->Integer());
    return document;
}

} // namespace orvane::tools
