/* Whether language files are found by name: each argument names one; the first that can't be had is told. */
#include <orvane/orvane.h>
#include <stdio.h>

int main(int argc, char** argv) {
    int i, status = 0;
    if (orv_InitDLL() != ORV_OK) return 2;
    for (i = 1; i < argc && status == 0; ++i) {
        if (orv_SetLanguageFile(argv[i]) != ORV_OK) status = 1, printf("no %s\n", argv[i]);
    }
    orv_ReleaseDLL();
    return status;
}
