// Bitmap files to and from the blocks of the library. A block is what follows the 14 bytes of a file's header.
using System;
using System.IO;
using System.Runtime.InteropServices;

namespace OrvaneHost
{
    // The 40 bytes of a BITMAPINFOHEADER.
    [StructLayout(LayoutKind.Sequential, Pack = 1)]
    struct BitmapHeader
    {
        public uint Size;
        public int Width;
        public int Height;
        public ushort Planes;
        public ushort BitCount;
        public uint Compression;
        public uint SizeImage;
        public int HorizontalResolution;
        public int VerticalResolution;
        public uint ColoursUsed;
        public uint ColoursImportant;

        public const int Length = 40;

        public static BitmapHeader From(byte[] bytes, int offset)
        {
            GCHandle pinned = GCHandle.Alloc(bytes, GCHandleType.Pinned);
            try
            {
                IntPtr start = IntPtr.Add(pinned.AddrOfPinnedObject(), offset);
                return (BitmapHeader)Marshal.PtrToStructure(start, typeof(BitmapHeader));
            }
            finally
            {
                pinned.Free();
            }
        }

        public void To(byte[] bytes, int offset)
        {
            GCHandle pinned = GCHandle.Alloc(bytes, GCHandleType.Pinned);
            try
            {
                Marshal.StructureToPtr(this, IntPtr.Add(pinned.AddrOfPinnedObject(), offset), false);
            }
            finally
            {
                pinned.Free();
            }
        }
    }

    // What is wrong with a file, as the rest of a sentence that begins with its name.
    sealed class FileProblem : Exception
    {
        public FileProblem(string problem) : base(problem) { }
    }

    static class BitmapFile
    {
        const int FileHeader = 14;
        const int LongestSide = 32767;

        // The file's 24-bit bitmap in a new block.
        public static Block Read(string name)
        {
            byte[] file;
            try
            {
                file = File.ReadAllBytes(name);
            }
            catch (Exception problem)
            {
                if (!IsOfFiles(problem)) throw;
                throw new FileProblem("can't be opened");
            }
            if (file.Length < FileHeader + BitmapHeader.Length || file[0] != 'B' || file[1] != 'M')
                throw new FileProblem("is not a bitmap file");
            BitmapHeader header = BitmapHeader.From(file, FileHeader);
            uint start = BitConverter.ToUInt32(file, 10);
            long pixels = PixelBytes(header);
            if (file.Length < start + pixels) throw new FileProblem("is cut off");

            // Newer headers are longer; the library knows the 40 bytes that all have in common.
            header.Size = BitmapHeader.Length;
            header.SizeImage = (uint)pixels;
            byte[] dib = new byte[BitmapHeader.Length + pixels];
            header.To(dib, 0);
            Array.Copy(file, start, dib, BitmapHeader.Length, pixels);
            return Block.Of(dib);
        }

        // Writes a block of the library as a file.
        public static void Write(string name, Block dib)
        {
            BitmapHeader header = HeaderOf(dib);
            byte[] bytes = dib.Bytes(BitmapHeader.Length + (int)header.SizeImage); // a block may be a little longer
            byte[] fileHeader = new byte[FileHeader];
            fileHeader[0] = (byte)'B';
            fileHeader[1] = (byte)'M';
            BitConverter.GetBytes(FileHeader + bytes.Length).CopyTo(fileHeader, 2);
            BitConverter.GetBytes(FileHeader + BitmapHeader.Length).CopyTo(fileHeader, 10);
            try
            {
                using (FileStream file = File.Create(name))
                {
                    file.Write(fileHeader, 0, fileHeader.Length);
                    file.Write(bytes, 0, bytes.Length);
                }
            }
            catch (Exception problem)
            {
                if (!IsOfFiles(problem)) throw;
                throw new FileProblem("can't be written");
            }
        }

        public static BitmapHeader HeaderOf(Block dib)
        {
            byte[] bytes = dib.Bytes(BitmapHeader.Length);
            if (bytes.Length < BitmapHeader.Length) throw new FileProblem("can't be written: there is no picture");
            return BitmapHeader.From(bytes, 0);
        }

        // The bytes of the pixels, each row padded to a multiple of 4, of a bitmap that the library takes.
        static long PixelBytes(BitmapHeader header)
        {
            if (header.Size < BitmapHeader.Length) throw new FileProblem("is not a bitmap file");
            if (header.BitCount != 24 || header.Compression != 0)
                throw new FileProblem("is not an uncompressed 24-bit bitmap");
            if (header.Height < 0) throw new FileProblem("has its top row first, which the library does not take");
            if (header.Width < 1 || header.Height < 1 || header.Width > LongestSide || header.Height > LongestSide)
                throw new FileProblem("has sides that the library does not take");
            return (3L * header.Width + 3) / 4 * 4 * header.Height;
        }

        // What goes wrong with files, and nothing else.
        static bool IsOfFiles(Exception problem)
        {
            return problem is IOException || problem is UnauthorizedAccessException || problem is ArgumentException ||
                   problem is NotSupportedException;
        }
    }
}
