/* What differs between Windows and the others. Names and texts are UTF-8 on every system. */
#ifndef HOST_SYSTEM_H
#define HOST_SYSTEM_H

#include <orvane/orvane.h>
#include <stdio.h>

/* The host itself, in main.c: gets the command line and gives the exit code. */
int RunHost(int count, char** arguments);

/* fopen for a name of any script; null when it fails. */
FILE* OpenNamedFile(const char* name, const char* mode);

/* Loads a library file; without a name the library beside this program, else the system's. Null when it fails. */
void* OpenLibrary(const char* name);

/* Why OpenLibrary failed just now. */
const char* LibraryProblem(void);

/* Stores the address of one function of the library in the pointer to a function at `pointer`. 0 when there is none. */
int FindFunction(void* library, const char* name, void* pointer);

void CloseLibrary(void* library);

/* The window in which this program runs, as the owner of the operator's; null when there is none to be had. */
orv_Window OwnWindow(void);

#endif
