/* A host in C that loads the library while it runs, sets all that can be set, and makes a portrait:
 *     host-c [LIBRARY] PHOTO.bmp PORTRAIT.bmp
 * Without LIBRARY it takes Orvane.dll (liborvane.so.1) beside itself, else the system's. */
#include "bitmap_file.h"
#include "orvane_library.h"
#include "system.h"

/* The exit codes. 1 is left to the system's own failures. */
enum {
    EXIT_PORTRAIT = 0,
    EXIT_USAGE = 2,
    EXIT_NO_LIBRARY = 3,
    EXIT_NO_PHOTO = 4,
    EXIT_FAILED = 5,
    EXIT_NOT_WRITTEN = 6,
    EXIT_NO_FACE = 10,
    EXIT_CANCELLED = 20
};

/* Tells what a call gave and hands that on. */
static int32_t Say(const char* call, int32_t result) {
    printf("%-36s %3d  %s\n", call, (int)result, ResultWords(result));
    return result;
}

/* Settings are made anew in each session. What fails here is told, and the session goes on without it. */
static void SetAll(const OrvaneLibrary* orvane) {
    orv_Window own = OwnWindow();
    if (own) Say("orv_SetOwnerWindow(own window)", orvane->SetOwnerWindow(own));
    /* A file in the library's folder; without it the operator's texts are English. */
    Say("orv_SetLanguageFile(german.txt)", orvane->SetLanguageFile("german.txt"));
    /* Hidden, the operator's window opens only where no face is found. */
    Say("orv_SetVisibleMode(0)", orvane->SetVisibleMode(0));
    Say("orv_SetSizeOutputImage(480, 640)", orvane->SetSizeOutputImage(480, 640));
    Say("orv_SetFaceCropRatio(1.0)", orvane->SetFaceCropRatio(1.0f)); /* leaves room above the hair */
    Say("orv_EnableAction(all, 0)", orvane->EnableAction(ORV_ALL_ACTIONS, 0));
    Say("orv_EnableAction(crop, 1)", orvane->EnableAction(ORV_CROP, 1));
    Say("orv_EnableAction(colour, 1)", orvane->EnableAction(ORV_CORRECT_COLOUR, 1));
    /* Where the photos have an even backdrop: orvane->EnableAction(ORV_REMOVE_BACKGROUND, 1). The operator's window
     * offers its tolerance then, and with ORV_ROTATE the rotation; neither has a function. */
}

/* The portrait as a new block, or null; *result is the first result that was not ORV_OK. */
static orv_Handle MakePortrait(const OrvaneLibrary* orvane, orv_Handle photo, int32_t* result) {
    orv_Handle portrait = NULL;
    *result = Say("orv_InitDLL", orvane->InitDLL());
    if (*result != ORV_OK) return NULL;
    SetAll(orvane);
    *result = Say("orv_DetectFacePicture", orvane->DetectFacePicture(photo));
    /* After "no face" too there is an output, the photo as it was worked on; it is no portrait. */
    if (*result == ORV_OK) *result = Say("orv_GetOutputImage", orvane->GetOutputImage(&portrait));
    Say("orv_ReleaseDLL", orvane->ReleaseDLL());
    return portrait;
}

static int ExitCode(int32_t result) {
    switch (result) {
    case ORV_OK:
        return EXIT_PORTRAIT;
    case ORV_NO_FACE:
        return EXIT_NO_FACE;
    case ORV_CANCELLED:
        return EXIT_CANCELLED;
    default:
        return EXIT_FAILED;
    }
}

/* From photo to portrait with a library that is loaded. */
static int Convert(const OrvaneLibrary* orvane, const char* photoName, const char* portraitName) {
    const char* problem;
    int32_t width, height, result;
    orv_Handle portrait, photo = ReadBitmapFile(photoName, &problem);
    int code;
    if (!photo) {
        fprintf(stderr, "%s %s\n", photoName, problem);
        return EXIT_NO_PHOTO;
    }
    BitmapSize(photo, &width, &height);
    printf("%s: %dx%d pixels, %d bits each\n", photoName, (int)width, (int)height, (int)orvane->GetBitDepth(photo));

    portrait = MakePortrait(orvane, photo, &result);
    orv_BlockFree(photo); /* the library keeps nothing of it */
    code = ExitCode(result);
    if (!portrait) {
        fprintf(stderr, "%s: %s\n", photoName, ResultWords(result));
    } else if (!WriteBitmapFile(portraitName, portrait)) {
        fprintf(stderr, "%s can't be written\n", portraitName);
        code = EXIT_NOT_WRITTEN;
    } else {
        BitmapSize(portrait, &width, &height);
        printf("%s: %dx%d pixels\n", portraitName, (int)width, (int)height);
    }
    orv_BlockFree(portrait); /* what the library handed over is the host's */
    return code;
}

int RunHost(int count, char** arguments) {
    OrvaneLibrary orvane;
    int code;
    if (count != 3 && count != 4) {
        fprintf(stderr, "usage: host-c [LIBRARY] PHOTO.bmp PORTRAIT.bmp\n");
        return EXIT_USAGE;
    }
    if (!LoadOrvane(&orvane, count == 4 ? arguments[1] : NULL)) return EXIT_NO_LIBRARY;
    code = Convert(&orvane, arguments[count - 2], arguments[count - 1]);
    UnloadOrvane(&orvane);
    return code;
}
