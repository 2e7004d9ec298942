/* A whole host in plain C, linked with the library: finds the face in a 24-bit bitmap file and writes the portrait as
 * another.
 *     host-linked PHOTO.bmp PORTRAIT.bmp
 * A bitmap file is 14 bytes of file header and then just what the library takes and gives. */
#include <orvane/orvane.h>
#include <stdio.h>
#include <string.h>

enum { FILE_HEADER = 14, BITMAP_HEADER = 40 };

/* The file's bitmap in a new block, or null. */
static orv_Handle ReadBitmap(const char* path) {
    FILE* file = fopen(path, "rb");
    long size = file && fseek(file, 0, SEEK_END) == 0 ? ftell(file) - FILE_HEADER : 0;
    orv_Handle dib = size > 0 && fseek(file, FILE_HEADER, SEEK_SET) == 0 ? orv_BlockAlloc((size_t)size) : NULL;
    int whole = dib && fread(orv_BlockLock(dib), (size_t)size, 1, file) == 1;
    if (dib) orv_BlockUnlock(dib);
    if (file) fclose(file);
    if (whole) return dib;
    orv_BlockFree(dib);
    return NULL;
}

/* Whether the block is written as a bitmap file. */
static int WriteBitmap(const char* path, orv_Handle dib) {
    const unsigned char* bytes = (const unsigned char*)orv_BlockLock(dib);
    unsigned char header[FILE_HEADER] = {'B', 'M'};
    FILE* file = fopen(path, "wb");
    uint32_t size = 0;
    int i, whole;
    if (!file) return orv_BlockUnlock(dib), 0;
    memcpy(&size, bytes + 20, 4); /* the bytes of the pixels; the block may be a little longer */
    size += BITMAP_HEADER;
    for (i = 0; i < 4; ++i) header[2 + i] = (unsigned char)((size + FILE_HEADER) >> 8 * i);
    header[10] = FILE_HEADER + BITMAP_HEADER; /* where the pixels start */
    whole = fwrite(header, FILE_HEADER, 1, file) == 1 && fwrite(bytes, size, 1, file) == 1;
    orv_BlockUnlock(dib);
    return fclose(file) == 0 && whole;
}

int main(int argc, char** argv) {
    orv_Handle photo, portrait = NULL;
    int32_t result;
    if (argc != 3) return fprintf(stderr, "usage: host-linked PHOTO.bmp PORTRAIT.bmp\n"), 2;
    photo = ReadBitmap(argv[1]);
    if (!photo) return fprintf(stderr, "%s can't be read\n", argv[1]), 2;

    result = orv_InitDLL();
    orv_SetVisibleMode(0);
    orv_SetSizeOutputImage(480, 860);
    orv_EnableAction(ORV_CROP, 1);
    if (result == ORV_OK) result = orv_DetectFacePicture(photo);
    if (result == ORV_OK) result = orv_GetOutputImage(&portrait);
    orv_ReleaseDLL();
    orv_BlockFree(photo);

    if (portrait && !WriteBitmap(argv[2], portrait)) fprintf(stderr, "%s can't be written\n", argv[2]), result = -1;
    orv_BlockFree(portrait);
    printf("result %d\n", (int)result);
    return result == ORV_OK ? 0 : 1;
}
