/* A library that only plays: each function gives the result that the environment names for it, and writes its name and
 * arguments to the file of ORVANE_PLAYED_LOG. The output is a picture of ORVANE_PLAYED_SIZE, "480x860" without it,
 * black with a red pixel in the upper left corner. */
#include <orvane/orvane.h>

#include <stdarg.h>
#include <stdio.h>

static int32_t Result(const char* function) {
    const char* value = getenv(function);
    return value == NULL ? 0 : (int32_t)atoi(value);
}

static void Log(const char* format, ...) {
    const char* path = getenv("ORVANE_PLAYED_LOG");
    FILE* file = path == NULL ? NULL : fopen(path, "a");
    if (file == NULL) return;
    va_list arguments;
    va_start(arguments, format);
    vfprintf(file, format, arguments);
    va_end(arguments);
    fclose(file);
}

int32_t orv_InitDLL(void) {
    Log("InitDLL\n");
    return Result("orv_InitDLL");
}

int32_t orv_ReleaseDLL(void) {
    Log("ReleaseDLL\n");
    return Result("orv_ReleaseDLL");
}

int32_t orv_SetLanguageFile(const char* path) {
    Log("SetLanguageFile %s\n", path);
    return Result("orv_SetLanguageFile");
}

int32_t orv_SetOwnerWindow(orv_Window owner) {
    Log("SetOwnerWindow %p\n", owner);
    return Result("orv_SetOwnerWindow");
}

int32_t orv_SetVisibleMode(orv_Bool visible) {
    Log("SetVisibleMode %d\n", visible);
    return Result("orv_SetVisibleMode");
}

int32_t orv_SetSizeOutputImage(int32_t width, int32_t height) {
    Log("SetSizeOutputImage %d %d\n", width, height);
    return Result("orv_SetSizeOutputImage");
}

int32_t orv_SetFaceCropRatio(float ratio) {
    Log("SetFaceCropRatio %.9g\n", (double)ratio);
    return Result("orv_SetFaceCropRatio");
}

int32_t orv_EnableAction(int32_t action, orv_Bool enable) {
    Log("EnableAction %d %d\n", action, enable);
    return Result("orv_EnableAction");
}

int32_t orv_GetBitDepth(orv_Handle dib) {
    (void)dib;
    return 24;
}

int32_t orv_DetectFacePicture(orv_Handle dib) {
    const unsigned char* bytes = orv_BlockLock(dib);
    Log("DetectFacePicture %zu", orv_BlockSize(dib));
    for (size_t i = 0; bytes != NULL && i < orv_BlockSize(dib) && i < 64; ++i) Log(" %02x", bytes[i]);
    Log("\n");
    return Result("orv_DetectFacePicture");
}

int32_t orv_DetectFaceLive(int32_t deviceIndex) {
    Log("DetectFaceLive %d\n", deviceIndex);
    return Result("orv_DetectFaceLive");
}

static void Put32(unsigned char* at, uint32_t value) { memcpy(at, &value, sizeof value); }

int32_t orv_GetOutputImage(orv_Handle* out) {
    int width = 480, height = 860;
    const char* size = getenv("ORVANE_PLAYED_SIZE");
    if (size != NULL) sscanf(size, "%dx%d", &width, &height);
    const size_t step = ((size_t)width * 3 + 3) / 4 * 4;
    Log("GetOutputImage\n");
    if (Result("orv_GetOutputImage") != 0) return Result("orv_GetOutputImage");
    *out = orv_BlockAlloc(40 + step * (size_t)height);
    if (*out == NULL) return ORV_NO_MEMORY;
    unsigned char* bytes = orv_BlockLock(*out);
    Put32(bytes, getenv("ORVANE_PLAYED_BAD_OUTPUT") == NULL ? 40 : 12);
    Put32(bytes + 4, (uint32_t)width);
    Put32(bytes + 8, (uint32_t)height);
    Put32(bytes + 12, 1 | 24u << 16);
    Put32(bytes + 20, (uint32_t)(step * (size_t)height));
    bytes[40 + step * (size_t)(height - 1) + 2] = 255;
    return ORV_OK;
}
