/* Orvane: a photograph or a live camera picture in, a portrait for an identity card out.
 *
 * The one public header; plain C99, also C++. There is one session a process and no handle for it: a
 * host calls orv_InitDLL, sets what it wants, calls one of the two detect functions, collects the
 * result with orv_GetOutputImage as often as it likes, and calls orv_ReleaseDLL.
 *
 * Threads: one call at a time, from whatever thread; a window opens on the thread of its detect call. docs/hosts.md
 * tells more, on COM and on what comes of wrong calls too.
 *
 * On Linux the operator's window is a module, orvane-window.so beside the library, and needs Qt 6. A host with
 * a QApplication calls from that one's thread; for a host without one the module makes one, keeps it until the
 * process ends, and stays with the thread of the first call. Without the module or a display the library
 * works without a window and says so once on standard error. Cameras are a module likewise,
 * orvane-camera.so, and need GStreamer.
 *
 * Pictures cross this border as packed bitmaps in memory blocks: a 40-byte BITMAPINFOHEADER (biSize 40,
 * biPlanes 1, biBitCount 24, biCompression 0, biSizeImage the bytes of the pixels), then the rows, the
 * bottom row first, blue, green, red, each row padded to a multiple of 4 bytes. Whoever receives a
 * block owns it: the library never frees a block that it was handed, the host frees what it got.
 *
 * Results: 0 success; 10 no face was found; 20 the operator cancelled; below zero a failure:
 *   -1 block could not be locked      -10 bad argument or size       -30 capture could not be started
 *   -40 a step of the detection failed  -50 out of memory            -60 no usable picture
 *   -70 classifier file missing or unusable      -80 no session, bad window handle or no output
 */
#ifndef ORVANE_ORVANE_H
#define ORVANE_ORVANE_H

#include <stddef.h>
#include <stdint.h>

#ifdef _WIN32
#include <windows.h>
#else
#include <stdlib.h>
#include <string.h>
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* A movable memory block. On Windows an HGLOBAL; elsewhere a pointer to the block's bytes with its size
 * in front, made and freed by the orv_Block functions below alone. */
typedef void* orv_Handle;

/* A window of the host: on Windows an HWND; on Linux the window's native number, cast to a pointer: an X11
 * window, or what QWidget::winId() gives. On Wayland only windows of a Qt host have one. */
typedef void* orv_Window;

/* True for any nonzero low byte. */
typedef int32_t orv_Bool;

/* The result codes. */
enum {
    ORV_OK = 0,
    ORV_NO_FACE = 10,
    ORV_CANCELLED = 20,
    ORV_LOCK_FAILED = -1,
    ORV_BAD_ARGUMENT = -10,
    ORV_CAPTURE_FAILED = -30,
    ORV_STEP_FAILED = -40,
    ORV_NO_MEMORY = -50,
    ORV_NO_PICTURE = -60,
    ORV_NO_CLASSIFIER = -70,
    ORV_NO_SESSION = -80
};

/* The action slots, in the order in which they run. Slot 4 has no action: enabled, it ends every run
 * before slot 5. Slot 5 is the library's own to switch. */
enum {
    ORV_ALL_ACTIONS = -1,
    ORV_CROP = 0,
    ORV_REMOVE_BACKGROUND = 1,
    ORV_CORRECT_COLOUR = 2,
    ORV_ROTATE = 3,
    ORV_NO_ACTION = 4,
    ORV_SCALE_OUTPUT = 5
};

#ifndef ORV_API
#ifdef _WIN32
#define ORV_API __declspec(dllimport)
#else
#define ORV_API
#endif
#endif

/* Opens the session. Finds the library's folder, chooses the primitives for the processor and loads
 * the classifier "Orvane.dat" beside the library file. Clears all action flags. On an open session it
 * keeps classifier and settings. A missing classifier fails not here but at the first detection.
 * 0; -50 out of memory; -80 the library's own file was not found or no primitives fit the processor, or from
 * inside a detect call, which changes nothing. */
ORV_API int32_t orv_InitDLL(void);

/* Closes the session and frees the classifier. Settings keep their values. 0; -80 without a session, or from
 * inside a detect call (a handler of the host that the window's loop serves), which changes nothing. */
ORV_API int32_t orv_ReleaseDLL(void);

/* Overlays the operator's texts with rows "index text" of a file in the library's folder (always taken
 * relative to it; on Windows in UTF-8, and what is none in the system's code page). 0; -10 the file could not be
 * opened, or path is null; -80 without a session. */
ORV_API int32_t orv_SetLanguageFile(const char* path);

/* Names the owner of the operator's window, which stays above it. One that has gone by the time the operator's
 * window opens counts as none; one that goes while it is open cancels the session. Where no window can be
 * shown any handle but null is taken. 0; -80 without a session, or for no window. */
ORV_API int32_t orv_SetOwnerWindow(orv_Window owner);

/* Whether the operator's window is shown (it is, by default). Without it a detect call works on its own
 * as long as it finds a face. 0; -80 without a session. */
ORV_API int32_t orv_SetVisibleMode(orv_Bool visible);

/* Size of the portrait in pixels, 480 by 860 by default. Stored untested: a size with a side under 75
 * has no effect, the width is rounded down to a multiple of 4, and one side grows when the crop has
 * other proportions. 0; -80 without a session. */
ORV_API int32_t orv_SetSizeOutputImage(int32_t width, int32_t height);

/* Crop ratio, 0.75 by default: the crop is three times ratio face heights high. 1.0 leaves room above the
 * hair, which the background's removal needs: it learns the background's colours from the upper edges. 0;
 * -10 when the ratio is not above zero, or no number (it is remembered all the same). Works without a session. */
ORV_API int32_t orv_SetFaceCropRatio(float ratio);

/* Switches one action slot (0 to 5), or all six with -1. 0; -10 for a slot of 6 or more. Works without
 * a session, but orv_InitDLL clears all flags. */
ORV_API int32_t orv_EnableAction(int32_t action, orv_Bool enable);

/* biBitCount of a packed bitmap: the library takes only 24. -1 when the block can't be locked or is
 * too short to tell. Works without a session. */
ORV_API int32_t orv_GetBitDepth(orv_Handle dib);

/* Finds the face in a packed bitmap and makes the portrait; modal. The block stays the caller's.
 * 0; 10 no face; 20 cancelled by the operator; -10 picture too small; -40, -50; -60 no usable picture;
 * -70 no classifier; -80 without a session, or from inside another detect call. */
ORV_API int32_t orv_DetectFacePicture(orv_Handle dib);

/* The same on the live picture of a capture device, by its index among the video input devices. Always
 * shows the operator's window, and leaves orv_SetVisibleMode on. Results as above, but 10: without a face the
 * operator's OK takes the whole picture; -30 there is no such device, it could not be started, or no window
 * could be opened. */
ORV_API int32_t orv_DetectFaceLive(int32_t deviceIndex);

/* Packs the result into a new block, stored in *out; the caller frees it. 0; -50 out of memory; -60 no
 * pixels; -80 without a session, without an output, or with out null. On failure *out stays. */
ORV_API int32_t orv_GetOutputImage(orv_Handle* out);

/* Memory blocks, the same calls on every system. ------------------------------------------------- */

#ifdef _WIN32

static inline orv_Handle orv_BlockAlloc(size_t size) {
    return (orv_Handle)GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, size);
}
static inline void* orv_BlockLock(orv_Handle block) { return block ? GlobalLock((HGLOBAL)block) : NULL; }
static inline void orv_BlockUnlock(orv_Handle block) { GlobalUnlock((HGLOBAL)block); }
static inline size_t orv_BlockSize(orv_Handle block) { return block ? (size_t)GlobalSize((HGLOBAL)block) : 0; }
static inline void orv_BlockFree(orv_Handle block) {
    if (block) GlobalFree((HGLOBAL)block);
}

#else

/* What stands in front of a block: a tag, by which a foreign pointer is told, and the block's size. */
#define ORV_BLOCK_TAG "orvblock"
#define ORV_BLOCK_PREFIX 16

/* A zeroed block of `size` bytes, or null. */
static inline orv_Handle orv_BlockAlloc(size_t size) {
    uint64_t length = size;
    unsigned char* start =
        size > SIZE_MAX - ORV_BLOCK_PREFIX ? NULL : (unsigned char*)calloc(1, size + ORV_BLOCK_PREFIX);
    if (start == NULL) return NULL;
    memcpy(start, ORV_BLOCK_TAG, 8);
    memcpy(start + 8, &length, 8);
    return start + ORV_BLOCK_PREFIX;
}

/* The block's bytes; null for a null handle or a pointer that orv_BlockAlloc did not make. */
static inline void* orv_BlockLock(orv_Handle block) {
    if (block == NULL || memcmp((unsigned char*)block - ORV_BLOCK_PREFIX, ORV_BLOCK_TAG, 8) != 0) return NULL;
    return block;
}

static inline void orv_BlockUnlock(orv_Handle block) { (void)block; }

/* Bytes in the block; 0 where it can't be locked. */
static inline size_t orv_BlockSize(orv_Handle block) {
    uint64_t length = 0;
    if (orv_BlockLock(block) != NULL) memcpy(&length, (unsigned char*)block - 8, 8);
    return (size_t)length;
}

/* Gives a block back; null is ignored. */
static inline void orv_BlockFree(orv_Handle block) {
    if (orv_BlockLock(block) == NULL) return;
    memset((unsigned char*)block - ORV_BLOCK_PREFIX, 0, ORV_BLOCK_PREFIX);
    free((unsigned char*)block - ORV_BLOCK_PREFIX);
}

#endif

#ifdef __cplusplus
}
#endif

#endif
