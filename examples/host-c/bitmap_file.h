/* Bitmap files to and from the blocks of the library. A block is what follows the 14 bytes of a file's header. */
#ifndef HOST_BITMAP_FILE_H
#define HOST_BITMAP_FILE_H

#include <orvane/orvane.h>

/* The 24-bit bitmap of a file as a new block, to be freed with orv_BlockFree. Null on failure; *problem says why. */
orv_Handle ReadBitmapFile(const char* name, const char** problem);

/* Writes a block of the library as a file. 0 when that fails. */
int WriteBitmapFile(const char* name, orv_Handle dib);

/* Size in pixels of the bitmap in a block of the library. */
void BitmapSize(orv_Handle dib, int32_t* width, int32_t* height);

#endif
