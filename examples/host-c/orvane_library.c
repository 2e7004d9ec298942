#include "orvane_library.h"

#include "system.h"

/* 1 when the function is there; else 0, and its name is told. */
static int Find(const OrvaneLibrary* library, const char* name, void* pointer) {
    if (FindFunction(library->file, name, pointer)) return 1;
    fprintf(stderr, "the library has no function %s\n", name);
    return 0;
}

/* The sizeof is never run: there the compiler compares the pointer's type with the header's function. */
#define FIND(name) ((void)sizeof(library->name = orv_##name), Find(library, "orv_" #name, &library->name))

int LoadOrvane(OrvaneLibrary* library, const char* name) {
    int found = 0;
    memset(library, 0, sizeof *library);
    library->file = OpenLibrary(name);
    if (!library->file) {
        fprintf(stderr, "%s can't be loaded: %s\n", name ? name : "the library", LibraryProblem());
        return 0;
    }
    found += FIND(InitDLL);
    found += FIND(ReleaseDLL);
    found += FIND(SetLanguageFile);
    found += FIND(SetOwnerWindow);
    found += FIND(SetVisibleMode);
    found += FIND(SetSizeOutputImage);
    found += FIND(SetFaceCropRatio);
    found += FIND(EnableAction);
    found += FIND(GetBitDepth);
    found += FIND(DetectFacePicture);
    found += FIND(DetectFaceLive);
    found += FIND(GetOutputImage);
    if (found == 12) return 1;
    UnloadOrvane(library);
    return 0;
}

void UnloadOrvane(OrvaneLibrary* library) {
    CloseLibrary(library->file);
    memset(library, 0, sizeof *library);
}

const char* ResultWords(int32_t result) {
    switch (result) {
    case ORV_OK:
        return "done";
    case ORV_NO_FACE:
        return "no face was found";
    case ORV_CANCELLED:
        return "the operator cancelled";
    case ORV_LOCK_FAILED:
        return "a memory block could not be locked";
    case ORV_BAD_ARGUMENT:
        return "an argument is bad, or the picture too small";
    case ORV_CAPTURE_FAILED:
        return "the camera could not be started";
    case ORV_STEP_FAILED:
        return "a step of the detection failed";
    case ORV_NO_MEMORY:
        return "there is not enough memory";
    case ORV_NO_PICTURE:
        return "the picture can't be used";
    case ORV_NO_CLASSIFIER:
        return "Orvane.dat beside the library is missing or unusable";
    case ORV_NO_SESSION:
        return "there is no session, no such window or no output";
    default:
        return "a result that this program does not know";
    }
}
