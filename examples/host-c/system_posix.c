/* Linux and its like. */
#define _POSIX_C_SOURCE 200809L /* for readlink, which C has not. NOLINT(bugprone-reserved-identifier) */
#include "system.h"

#include <dlfcn.h>
#include <unistd.h>

/* The name of the version that this host was written for; plain liborvane.so is for building alone. */
#define LIBRARY "liborvane.so.1"

FILE* OpenNamedFile(const char* name, const char* mode) { return fopen(name, mode); }

void* OpenLibrary(const char* name) {
    char beside[4096];
    ssize_t length;
    char* slash;
    if (name) return dlopen(name, RTLD_NOW | RTLD_LOCAL);

    length = readlink("/proc/self/exe", beside, sizeof beside - sizeof LIBRARY);
    if (length > 0) {
        beside[length] = '\0';
        slash = strrchr(beside, '/');
        memcpy(slash + 1, LIBRARY, sizeof LIBRARY);
        /* One that is there but does not load is told, not passed over. */
        if (access(beside, F_OK) == 0) return dlopen(beside, RTLD_NOW | RTLD_LOCAL);
    }
    return dlopen(LIBRARY, RTLD_NOW | RTLD_LOCAL);
}

const char* LibraryProblem(void) {
    const char* problem = dlerror();
    return problem ? problem : "no reason is known";
}

int FindFunction(void* library, const char* name, void* pointer) {
    void* address = dlsym(library, name);
    /* C has no cast from a data pointer to a function; POSIX says that both have the same bytes. */
    if (address) memcpy(pointer, &address, sizeof address);
    return address != NULL;
}

void CloseLibrary(void* library) { dlclose(library); }

/* X11 terminals tell their programs which window they run in. */
orv_Window OwnWindow(void) {
    const char* number = getenv("WINDOWID");
    return number ? (orv_Window)(size_t)strtoul(number, NULL, 10) : NULL;
}

int main(int count, char** arguments) { return RunHost(count, arguments); }
