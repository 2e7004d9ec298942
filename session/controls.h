// The one list of what stands in the library's windows, in dialog units: a quarter of the dialog font's
// average character across, an eighth of its height down. The resource compiler reads it as well, so the
// upper half holds macros alone; the Windows templates and the Qt windows expand them.
#ifndef ORVANE_SESSION_CONTROLS_H
#define ORVANE_SESSION_CONTROLS_H

// X(kind, id, text, x, y, width, height, start): the controls of the quick view in the order of the tab
// key. Kinds: PICTURE (bitmap, border), LABEL, LABEL_CENTRED, LABEL_RIGHT, BUTTON, DEFAULT_BUTTON,
// SKIN_BUTTON (draws itself), GROUP, DIGITS (edit, digits only, centred), DIGITS_BORDERED, SLIDER (without
// ticks), CHECK. `start` is SHOWN or HIDDEN.
// clang-format off
#define ORV_QUICK_VIEW_CONTROLS(X) \
    X(PICTURE,         1000, L"",                      6,   6, 264, 243, SHOWN) \
    X(LABEL_CENTRED,   -1,   L"Please click on the image to define the face position", \
                                                       0, 258, 268,   8, HIDDEN) \
    X(SKIN_BUTTON,     1007, L"OK",                  102, 144,  72,  18, HIDDEN) \
    X(SKIN_BUTTON,     1008, L"Clear",               102, 126,  72,  18, HIDDEN) \
    X(SKIN_BUTTON,     1006, L"Color Correction",    102, 108,  72,  18, HIDDEN) \
    X(DEFAULT_BUTTON,  1015, L"OK",                  306, 222,  84,  18, SHOWN) \
    X(BUTTON,          1016, L"Clear",               306,  12,  84,  18, SHOWN) \
    X(BUTTON,          1017, L"Color Correction",    306,  12,  84,  18, HIDDEN) \
    X(BUTTON,          1025, L"Freeze",              306,  12,  84,  18, HIDDEN) \
    X(BUTTON,          1004, L"Cancel",              306, 252,  84,  18, SHOWN) \
    X(BUTTON,          1020, L"?",                   414,   0,   6,  12, SHOWN) \
    X(GROUP,           1026, L"Background Remotion", 288, 132, 120,  60, HIDDEN) \
    X(LABEL,           1027, L"Tolerance",           296, 151,  61,   8, HIDDEN) \
    X(DIGITS,          1003, L"",                    360, 151,  12,  12, HIDDEN) \
    X(LABEL,           1028, L"%",                   372, 151,   8,   8, HIDDEN) \
    X(BUTTON,          1021, L"-",                   306, 169,  12,  14, HIDDEN) \
    X(SLIDER,          1005, L"",                    318, 169,  60,  12, HIDDEN) \
    X(BUTTON,          1023, L"+",                   378, 169,  12,  14, HIDDEN) \
    X(GROUP,           1030, L"Image Rotation",      288,  48, 120,  60, HIDDEN) \
    X(LABEL_RIGHT,     1031, L"Rotation",            300,  60,  52,   8, HIDDEN) \
    X(DIGITS_BORDERED, 1024, L"",                    354,  60,  20,  12, HIDDEN) \
    X(LABEL,           1032, L"\xBA",                373,  60,   8,   8, HIDDEN) \
    X(GROUP,           1042, L" - ",                 294,  72,  49,  31, HIDDEN) \
    X(BUTTON,          1034, L"90\xBA",              300,  84,  18,  14, HIDDEN) \
    X(BUTTON,          1035, L"1\xBA",               324,  84,  12,  14, HIDDEN) \
    X(GROUP,           1043, L" + ",                 354,  72,  48,  31, HIDDEN) \
    X(BUTTON,          1036, L"1\xBA",               360,  84,  12,  14, HIDDEN) \
    X(BUTTON,          1037, L"90\xBA",              378,  84,  18,  14, HIDDEN) \
    X(CHECK,           1044, L"Watermark Image",     306, 204,  73,  10, HIDDEN)

// X(kind, id, text, x, y, width, height, start): the about box. ICON shows icon 128.
#define ORV_ABOUT_CONTROLS(X) \
    X(ICON,           128, L"",                                              11, 17, 20, 20, SHOWN) \
    X(LABEL,          -1,  L"Kelmont Version 1.0  for Dravik",               39, 18, 140, 8, SHOWN) \
    X(LABEL,          -1,  L"Portraits for identity cards",                  39, 36, 140, 8, SHOWN) \
    X(LABEL,          -1,  L"Free software under the MIT licence",           40, 54, 140, 8, SHOWN) \
    X(LABEL,          -1,  L"The licence comes with the library",            39, 69, 140, 8, SHOWN) \
    X(DEFAULT_BUTTON, 1,   L"OK",                                            67, 90, 50, 16, SHOWN)

// X(kind, id, text, x, y, width, height, start): the confirmation of the face.
#define ORV_CONFIRM_CONTROLS(X) \
    X(PICTURE, 1029, L"", 6, 6, 15, 13, SHOWN)

// X(index, text): the texts that a language file may overlay; the rows that are missing hold "???".
#define ORV_LANGUAGE_TEXTS(X) \
    X(1,  L"Freeze") \
    X(2,  L"Unfreeze") \
    X(3,  L"Ok") \
    X(4,  L"Cancel") \
    X(5,  L"Color Correction") \
    X(6,  L"-") \
    X(7,  L"+") \
    X(8,  L"Clear") \
    X(9,  L"Background Remotion") \
    X(10, L"Tolerance") \
    X(11, L"Image Rotation") \
    X(12, L"Rotation") \
    X(13, L"Please click on the image to define the face position")
// clang-format on

// The windows' resource numbers, titles and sizes in dialog units.
#define ORV_ABOUT_DIALOG 100
#define ORV_ABOUT_TITLE L"About Orvane - Kelmont"
#define ORV_ABOUT_WIDTH 185
#define ORV_ABOUT_HEIGHT 114
#define ORV_CONFIRM_DIALOG 101
#define ORV_CONFIRM_TITLE L"Orvane - Kelmont"
#define ORV_CONFIRM_WIDTH 96
#define ORV_CONFIRM_HEIGHT 94
#define ORV_QUICK_VIEW_DIALOG 102
#define ORV_QUICK_VIEW_WIDTH 424
#define ORV_QUICK_VIEW_HEIGHT 281
#define ORV_MAIN_ICON 128

// The entry of the system menu: command and string resource.
#define ORV_ABOUT_COMMAND 16
#define ORV_ABOUT_ENTRY 101
#define ORV_ABOUT_ENTRY_TEXT L"&About OrvaneFaceDetection-MFC..."

#ifndef RC_INVOKED

#include "primitives/types.h"

namespace orvane {

/// The controls that the session talks to.
enum ControlId : int32 {
    kPrompt = -1,
    kPreview = 1000,
    kToleranceEdit = 1003,
    kCancelButton = 1004,
    kToleranceSlider = 1005,
    kSkinColor = 1006,
    kSkinOk = 1007,
    kSkinClear = 1008,
    kPlainOk = 1015,
    kPlainClear = 1016,
    kPlainColor = 1017,
    kAboutButton = 1020,
    kToleranceDown = 1021,
    kToleranceUp = 1023,
    kRotationEdit = 1024,
    kPlainFreeze = 1025,
    kToleranceGroup = 1026,
    kToleranceLabel = 1027,
    kTolerancePercent = 1028,
    kConfirmPicture = 1029,
    kRotationGroup = 1030,
    kRotationLabel = 1031,
    kRotationDegree = 1032,
    kTurnBack90 = 1034,
    kTurnBack1 = 1035,
    kTurnOn1 = 1036,
    kTurnOn90 = 1037,
    kTurnBackGroup = 1042,
    kTurnOnGroup = 1043,
    kWatermarkCheck = 1044,
};

/// Where the preview's first pixel lies in the window's client coordinates.
inline constexpr int32 kPreviewLeft = 11;
inline constexpr int32 kPreviewTop = 12;

} // namespace orvane

#endif
#endif
