// Faces, groups, measures and documents as bytes, for the talk between a run and its workers.
#pragma once

#include "tools/batch/packing.h"
#include "tools/documents/document.h"
#include "tools/orvane/report.h"

#include <optional>

namespace orvane::tools {

void PackFace(const std::optional<FaceBox>& face, Packer* packer);
std::optional<FaceBox> UnpackFace(Unpacker* unpacker);

/// The groups and the measures of a report. False for bytes that are none.
void PackFindings(const PhotoReport& report, Packer* packer);
bool UnpackFindings(Unpacker* unpacker, PhotoReport* report);

/// What a check asks of a document: its size, bands and background.
void PackDocument(const Document& document, Packer* packer);
Document UnpackDocument(Unpacker* unpacker);

} // namespace orvane::tools
