/* Windows: names go to the system in UTF-16, so that they may hold letters of every script. */
#include "system.h"

#include <stdlib.h>
#include <wchar.h>

/* A text in UTF-16, to be freed; null for want of memory. */
static wchar_t* Wide(const char* text) {
    int length = MultiByteToWideChar(CP_UTF8, 0, text, -1, NULL, 0);
    wchar_t* wide = (wchar_t*)malloc((size_t)length * sizeof(wchar_t));
    if (wide) MultiByteToWideChar(CP_UTF8, 0, text, -1, wide, length);
    return wide;
}

/* A text in UTF-8, to be freed; null for want of memory. */
static char* Narrow(const wchar_t* text) {
    int length = WideCharToMultiByte(CP_UTF8, 0, text, -1, NULL, 0, NULL, NULL);
    char* narrow = (char*)malloc((size_t)length);
    if (narrow) WideCharToMultiByte(CP_UTF8, 0, text, -1, narrow, length, NULL, NULL);
    return narrow;
}

FILE* OpenNamedFile(const char* name, const char* mode) {
    wchar_t* wideName = Wide(name);
    wchar_t* wideMode = Wide(mode);
    FILE* file = wideName && wideMode ? _wfopen(wideName, wideMode) : NULL;
    free(wideName);
    free(wideMode);
    return file;
}

void* OpenLibrary(const char* name) {
    wchar_t* wide;
    HMODULE library;
    /* A bare name is looked for beside the program first, then in the system's folders. */
    if (!name) return (void*)LoadLibraryW(L"Orvane.dll");
    wide = Wide(name);
    library = wide ? LoadLibraryW(wide) : NULL;
    free(wide);
    return (void*)library;
}

const char* LibraryProblem(void) {
    static char text[40];
    DWORD error = GetLastError();
    if (error == ERROR_MOD_NOT_FOUND) return "there is no such file, or another that it needs is missing";
    if (error == ERROR_BAD_EXE_FORMAT) return "it is no library, or not one for programs of this width (32 or 64 bit)";
    snprintf(text, sizeof text, "the system's error %lu", (unsigned long)error);
    return text;
}

int FindFunction(void* library, const char* name, void* pointer) {
    FARPROC address = GetProcAddress((HMODULE)library, name);
    if (address) memcpy(pointer, &address, sizeof address);
    return address != NULL;
}

void CloseLibrary(void* library) { FreeLibrary((HMODULE)library); }

orv_Window OwnWindow(void) { return (orv_Window)GetConsoleWindow(); }

int wmain(int count, wchar_t** wide) {
    char** arguments = (char**)calloc((size_t)count + 1, sizeof(char*));
    UINT codePage = GetConsoleOutputCP();
    int i, result = 1;
    for (i = 0; arguments && i < count; ++i) {
        arguments[i] = Narrow(wide[i]);
        if (!arguments[i]) break;
    }
    SetConsoleOutputCP(CP_UTF8);
    if (arguments && i == count) result = RunHost(count, arguments);
    fflush(stdout);
    SetConsoleOutputCP(codePage); /* the console is not this program's alone */
    for (i = 0; arguments && i < count; ++i) free(arguments[i]);
    free(arguments);
    return result;
}
