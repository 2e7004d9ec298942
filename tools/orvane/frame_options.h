// The options that make a portrait of a size in millimetres: --document, --size 35x45mm, --head, --fill. With --dpi
// they come to one frame, or to none where the size is given in pixels.
#pragma once

#include "tools/batch/packing.h"
#include "tools/documents/frame.h"
#include "tools/support/file_settings.h"
#include "tools/support/portrait_options.h"

#include <optional>
#include <string>

namespace orvane::tools {

struct FrameOptions {
    std::string document; ///< A name or a file, as given; empty for none.
    bool sizeInPixels = false;
    bool sizeInMillimetres = false;
    double givenWidth = 0; ///< Millimetres.
    double givenHeight = 0;
    bool cropRatioGiven = false;
    std::optional<Band> givenHead;
    std::optional<Fill> givenFill;
    bool allowEdits = false;
    std::optional<FrameWish> frame;                  ///< What they come to.
    std::optional<std::uint64_t> documentLeastBytes; ///< Of the document's file.
    std::optional<std::uint64_t> documentMostBytes;
};

/// Read the values of --size (pixels, or millimetres with mm behind them), --crop-ratio, --document, --head and --fill.
/// False gives `*error` one line, which starts with the option's name.
bool SetPortraitSize(const std::string& text, PortraitSettings* settings, FrameOptions* frame, std::string* error);
bool SetRatio(const std::string& text, PortraitSettings* settings, FrameOptions* frame, std::string* error);
bool SetDocument(const std::string& text, FrameOptions* frame, std::string* error);
bool SetHead(const std::string& text, FrameOptions* frame, std::string* error);
bool SetFill(const std::string& text, FrameOptions* frame, std::string* error);

/// Makes `frame->frame` of all options together; false gives `*error` one line on those that do not go together, or on
/// the document. `dpi` is that of --dpi.
bool FinishFrame(const PortraitSettings& settings, std::optional<int32> dpi, FrameOptions* frame, std::string* error);

/// What a frame says of the portrait's file `output`, where no option did: its resolution, and of a JPEG file the
/// bounds of the document.
void SetFileOfFrame(const FrameOptions& frame, const std::string& output, FileSettings* file);

/// All of a frame that a portrait depends on, for workers and for the fingerprint of a run; the name goes apart.
void PackFrame(const std::optional<FrameWish>& frame, Packer* packer);
void UnpackFrame(Unpacker* unpacker, std::optional<FrameWish>* frame);

} // namespace orvane::tools
