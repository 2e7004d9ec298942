// Media types, and the list of them that a pin gives out.
#pragma once

#include <windows.h>

#include <dshow.h>

#include <memory>
#include <vector>

namespace orvane::test {

/// A form of frames, of 24-bit pixels unless it is interleaved. A height below 0 begins at the top.
struct FrameForm {
    bool interleaved;
    LONG width;
    LONG height;
};

/// Makes a type of its own; false when memory is exhausted.
bool MakeType(const FrameForm& form, AM_MEDIA_TYPE& type);
bool CopyType(const AM_MEDIA_TYPE& from, AM_MEDIA_TYPE& to);
/// Gives back what a type holds.
void EmptyType(AM_MEDIA_TYPE& type);
/// The same as a block of the system's task memory, as enumerators give them out; null when memory is exhausted.
AM_MEDIA_TYPE* NewType(const FrameForm& form);

/// True where a type, which may leave kind, pixels and format open, fits a form.
bool Fits(const AM_MEDIA_TYPE* type, const FrameForm& form);

/// A list of forms as an enumerator.
IEnumMediaTypes* MakeTypeList(std::vector<FrameForm> forms);

} // namespace orvane::test
