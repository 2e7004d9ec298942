/* The library, loaded while the program runs: its twelve functions as pointers. The program starts without it and
 * can say what is wrong when it is not there. */
#ifndef HOST_ORVANE_LIBRARY_H
#define HOST_ORVANE_LIBRARY_H

#include <orvane/orvane.h>

typedef struct OrvaneLibrary {
    void* file;
    int32_t (*InitDLL)(void);
    int32_t (*ReleaseDLL)(void);
    int32_t (*SetLanguageFile)(const char* path);
    int32_t (*SetOwnerWindow)(orv_Window owner);
    int32_t (*SetVisibleMode)(orv_Bool visible);
    int32_t (*SetSizeOutputImage)(int32_t width, int32_t height);
    int32_t (*SetFaceCropRatio)(float ratio);
    int32_t (*EnableAction)(int32_t action, orv_Bool enable);
    int32_t (*GetBitDepth)(orv_Handle dib);
    int32_t (*DetectFacePicture)(orv_Handle dib);
    int32_t (*DetectFaceLive)(int32_t deviceIndex);
    int32_t (*GetOutputImage)(orv_Handle* out);
} OrvaneLibrary;

/* Loads the file and finds the twelve functions; without a name the library beside the program, else the system's.
 * 0 when it can't be loaded or functions are missing, which is told on standard error; nothing stays loaded then. */
int LoadOrvane(OrvaneLibrary* library, const char* name);

void UnloadOrvane(OrvaneLibrary* library);

/* What a result code says. */
const char* ResultWords(int32_t result);

#endif
