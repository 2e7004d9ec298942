#include "bitmap_file.h"

#include "system.h"

enum { FILE_HEADER = 14, BITMAP_HEADER = 40, BOTH_HEADERS = FILE_HEADER + BITMAP_HEADER, LONGEST_SIDE = 32767 };

/* Numbers stand in a bitmap with their lowest byte first. */
static uint32_t Number(const unsigned char* bytes, int count) {
    uint32_t number = 0;
    while (count > 0) number = number << 8 | bytes[--count];
    return number;
}

static void PutNumber(unsigned char* bytes, uint32_t number) {
    int i;
    for (i = 0; i < 4; ++i) bytes[i] = (unsigned char)(number >> 8 * i);
}

/* Reads both headers and tells what is wrong with them; null when nothing is. `*pixels` becomes the bytes of the
 * pixels, each row padded to a multiple of 4. */
static const char* ReadHeaders(FILE* file, unsigned char* headers, uint32_t* pixels) {
    const unsigned char* bitmap = headers + FILE_HEADER;
    uint32_t width, height;
    if (fread(headers, BOTH_HEADERS, 1, file) != 1) memset(headers, 0, BOTH_HEADERS);
    if (headers[0] != 'B' || headers[1] != 'M' || Number(bitmap, 4) < BITMAP_HEADER) return "is not a bitmap file";
    width = Number(bitmap + 4, 4);
    height = Number(bitmap + 8, 4);
    if (Number(bitmap + 14, 2) != 24 || Number(bitmap + 16, 4) != 0) return "is not an uncompressed 24-bit bitmap";
    if (height > INT32_MAX) return "has its top row first, which the library does not take";
    if (width < 1 || height < 1 || width > LONGEST_SIDE || height > LONGEST_SIDE)
        return "has sides that the library does not take";
    *pixels = (3 * width + 3) / 4 * 4 * height;
    return NULL;
}

/* Goes to where the pixels start, and tells when they are not all there. */
static const char* FindPixels(FILE* file, uint32_t start, uint32_t pixels) {
    long length;
    if (fseek(file, 0, SEEK_END) != 0 || (length = ftell(file)) < 0) return "can't be read";
    if ((uint64_t)length < (uint64_t)start + pixels) return "is cut off";
    return fseek(file, (long)start, SEEK_SET) == 0 ? NULL : "can't be read";
}

orv_Handle ReadBitmapFile(const char* name, const char** problem) {
    unsigned char headers[BOTH_HEADERS];
    uint32_t pixels = 0;
    orv_Handle dib = NULL;
    unsigned char* bytes;
    FILE* file = OpenNamedFile(name, "rb");
    *problem = file ? ReadHeaders(file, headers, &pixels) : "can't be opened";
    if (!*problem) *problem = FindPixels(file, Number(headers + 10, 4), pixels);
    if (!*problem) {
        dib = orv_BlockAlloc((size_t)BITMAP_HEADER + pixels);
        bytes = (unsigned char*)orv_BlockLock(dib);
        if (bytes) {
            /* Newer headers are longer; the library knows the 40 bytes that all have in common. */
            memcpy(bytes, headers + FILE_HEADER, BITMAP_HEADER);
            PutNumber(bytes, BITMAP_HEADER);
            PutNumber(bytes + 20, pixels);
            if (fread(bytes + BITMAP_HEADER, pixels, 1, file) != 1) *problem = "can't be read";
            orv_BlockUnlock(dib);
        } else {
            *problem = "is too large for the memory";
        }
    }
    if (file) fclose(file);
    if (!*problem) return dib;
    orv_BlockFree(dib);
    return NULL;
}

int WriteBitmapFile(const char* name, orv_Handle dib) {
    const unsigned char* bytes = (const unsigned char*)orv_BlockLock(dib);
    unsigned char header[FILE_HEADER] = {'B', 'M'};
    FILE* file = bytes ? OpenNamedFile(name, "wb") : NULL;
    int whole = 0;
    if (file) {
        /* A block may be a little longer than its bitmap: the header tells. */
        uint32_t size = BITMAP_HEADER + Number(bytes + 20, 4);
        PutNumber(header + 2, FILE_HEADER + size);
        PutNumber(header + 10, BOTH_HEADERS);
        whole = fwrite(header, sizeof header, 1, file) == 1 && fwrite(bytes, size, 1, file) == 1;
        whole = fclose(file) == 0 && whole;
    }
    if (bytes) orv_BlockUnlock(dib);
    return whole;
}

void BitmapSize(orv_Handle dib, int32_t* width, int32_t* height) {
    const unsigned char* bytes = (const unsigned char*)orv_BlockLock(dib);
    *width = bytes ? (int32_t)Number(bytes + 4, 4) : 0;
    *height = bytes ? (int32_t)Number(bytes + 8, 4) : 0;
    if (bytes) orv_BlockUnlock(dib);
}
