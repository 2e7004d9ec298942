#include "bitmap_file.h"

#include <array>
#include <cstddef>
#include <cstring>
#include <fstream>
#include <type_traits>

namespace host {
namespace {

constexpr std::size_t kFileHeader = 14, kBitmapHeader = 40;
constexpr std::uint32_t kLongestSide = 32767;

/// Numbers stand in a bitmap with their lowest byte first.
std::uint32_t Number(const unsigned char* bytes, int count = 4) {
    std::uint32_t number = 0;
    while (count > 0) number = number << 8 | bytes[--count];
    return number;
}

void PutNumber(unsigned char* bytes, std::uint32_t number) {
    for (int i = 0; i < 4; ++i) bytes[i] = static_cast<unsigned char>(number >> 8 * i);
}

using Headers = std::array<unsigned char, kFileHeader + kBitmapHeader>;

/// The bytes of the pixels, each row padded to a multiple of 4, where the headers tell of a bitmap that the library
/// takes.
std::uint32_t PixelBytes(const Headers& headers) {
    const unsigned char* bitmap = headers.data() + kFileHeader;
    if (headers[0] != 'B' || headers[1] != 'M' || Number(bitmap) < kBitmapHeader) {
        throw FileProblem("is not a bitmap file");
    }
    if (Number(bitmap + 14, 2) != 24 || Number(bitmap + 16) != 0) {
        throw FileProblem("is not an uncompressed 24-bit bitmap");
    }
    const std::uint32_t width = Number(bitmap + 4), height = Number(bitmap + 8);
    if (height > INT32_MAX) throw FileProblem("has its top row first, which the library does not take");
    if (width < 1 || height < 1 || width > kLongestSide || height > kLongestSide) {
        throw FileProblem("has sides that the library does not take");
    }
    return (3 * width + 3) / 4 * 4 * height;
}

template <typename Byte>
auto* Characters(Byte* bytes) {
    return reinterpret_cast<std::conditional_t<std::is_const_v<Byte>, const char, char>*>(bytes);
}

} // namespace

Block ReadBitmap(const std::filesystem::path& name) {
    std::ifstream file(name, std::ios::binary);
    if (!file) throw FileProblem("can't be opened");
    Headers headers{};
    if (!file.read(Characters(headers.data()), headers.size())) throw FileProblem("is not a bitmap file");
    const std::uint32_t pixels = PixelBytes(headers);
    const std::uint32_t start = Number(headers.data() + 10);
    const std::streamoff length = file.seekg(0, std::ios::end).tellg();
    if (length < std::streamoff{start} + std::streamoff{pixels}) throw FileProblem("is cut off");

    Block dib(kBitmapHeader + pixels);
    const LockedBlock locked(dib);
    unsigned char* bytes = locked.Bytes();
    if (bytes == nullptr) throw FileProblem("is too large for the memory");
    // Newer headers are longer; the library knows the 40 bytes that all have in common.
    std::memcpy(bytes, headers.data() + kFileHeader, kBitmapHeader);
    PutNumber(bytes, kBitmapHeader);
    PutNumber(bytes + 20, pixels);
    if (!file.seekg(start).read(Characters(bytes + kBitmapHeader), pixels)) throw FileProblem("can't be read");
    return dib;
}

void WriteBitmap(const std::filesystem::path& name, const Block& dib) {
    const LockedBlock locked(dib);
    const unsigned char* bytes = locked.Bytes();
    if (bytes == nullptr) throw FileProblem("can't be written: there is no picture");
    // A block may be a little longer than its bitmap: the header tells.
    const auto size = static_cast<std::uint32_t>(kBitmapHeader + Number(bytes + 20));
    std::array<unsigned char, kFileHeader> header{'B', 'M'};
    PutNumber(header.data() + 2, static_cast<std::uint32_t>(kFileHeader + size));
    PutNumber(header.data() + 10, static_cast<std::uint32_t>(kFileHeader + kBitmapHeader));
    std::ofstream file(name, std::ios::binary);
    file.write(Characters(header.data()), header.size()).write(Characters(bytes), size);
    file.close();
    if (!file) throw FileProblem("can't be written");
}

PixelSize SizeOf(const Block& dib) {
    const LockedBlock locked(dib);
    if (locked.Bytes() == nullptr) return {0, 0};
    return {static_cast<std::int32_t>(Number(locked.Bytes() + 4)),
            static_cast<std::int32_t>(Number(locked.Bytes() + 8))};
}

} // namespace host
