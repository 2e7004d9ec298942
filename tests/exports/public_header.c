/* The public header stands alone, in strict C99. */
#include "orvane/orvane.h"

/* Its inline functions are compiled here as C for once. */
size_t PublicHeaderInC(void);

size_t PublicHeaderInC(void) {
    orv_Handle block = orv_BlockAlloc(40);
    size_t size = orv_BlockLock(block) != NULL ? orv_BlockSize(block) : 0;
    orv_BlockUnlock(block);
    orv_BlockFree(block);
    return size;
}
