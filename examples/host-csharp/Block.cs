// A memory block as the library takes and gives it. On Windows it is one of GlobalAlloc. Elsewhere it is memory of the
// C library with 16 bytes in front, a tag and the block's size, and the handle points behind these; the header's
// orv_Block functions do the same.
using System;
using System.Runtime.InteropServices;
using System.Text;

namespace OrvaneHost
{
    sealed class Block : IDisposable
    {
        const int Prefix = 16;
        static readonly byte[] Tag = Encoding.ASCII.GetBytes("orvblock");
        static readonly bool OnWindows = Environment.OSVersion.Platform == PlatformID.Win32NT;

        IntPtr handle;

        // Owns a block that the library handed over.
        public Block(IntPtr handle) { this.handle = handle; }

        // A new block with these bytes.
        public static Block Of(byte[] bytes) { return new Block(OnWindows ? GlobalBlock(bytes) : PlainBlock(bytes)); }

        public IntPtr Handle { get { return handle; } }

        // A copy of the first `count` bytes; shorter where the block is.
        public byte[] Bytes(int count)
        {
            IntPtr start = OnWindows ? GlobalLock(handle) : PlainStart(handle) == IntPtr.Zero ? IntPtr.Zero : handle;
            if (start == IntPtr.Zero) return new byte[0];
            ulong size = OnWindows ? GlobalSize(handle).ToUInt64() : (ulong)Marshal.ReadInt64(handle, -8);
            byte[] bytes = new byte[Math.Min((ulong)count, size)];
            Marshal.Copy(start, bytes, 0, bytes.Length);
            if (OnWindows) GlobalUnlock(handle);
            return bytes;
        }

        public void Dispose()
        {
            Release();
            GC.SuppressFinalize(this);
        }

        ~Block() { Release(); }

        void Release()
        {
            if (handle == IntPtr.Zero) return;
            if (OnWindows)
            {
                GlobalFree(handle);
            }
            else
            {
                IntPtr start = PlainStart(handle);
                if (start != IntPtr.Zero)
                {
                    Marshal.Copy(new byte[Prefix], 0, start, Prefix); // a handle used after this is told
                    free(start);
                }
            }
            handle = IntPtr.Zero;
        }

        static IntPtr GlobalBlock(byte[] bytes)
        {
            const uint Movable = 2;
            IntPtr block = GlobalAlloc(Movable, new UIntPtr((uint)bytes.Length));
            IntPtr start = block == IntPtr.Zero ? IntPtr.Zero : GlobalLock(block);
            if (start == IntPtr.Zero)
            {
                if (block != IntPtr.Zero) GlobalFree(block);
                throw new OutOfMemoryException();
            }
            Marshal.Copy(bytes, 0, start, bytes.Length);
            GlobalUnlock(block);
            return block;
        }

        static IntPtr PlainBlock(byte[] bytes)
        {
            IntPtr start = calloc(new UIntPtr(1), new UIntPtr((uint)bytes.Length + Prefix));
            if (start == IntPtr.Zero) throw new OutOfMemoryException();
            Marshal.Copy(Tag, 0, start, Tag.Length);
            Marshal.WriteInt64(start, 8, bytes.Length); // 8 bytes in 32-bit processes too
            IntPtr block = IntPtr.Add(start, Prefix);
            Marshal.Copy(bytes, 0, block, bytes.Length);
            return block;
        }

        // Where the memory of a block begins; zero for a pointer without the tag in front.
        static IntPtr PlainStart(IntPtr block)
        {
            if (block == IntPtr.Zero) return IntPtr.Zero;
            IntPtr start = IntPtr.Subtract(block, Prefix);
            for (int i = 0; i < Tag.Length; ++i)
            {
                if (Marshal.ReadByte(start, i) != Tag[i]) return IntPtr.Zero;
            }
            return start;
        }

        // The system's functions for 32 bit are stdcall, which is what Winapi stands for on Windows.
        [DllImport("kernel32", CallingConvention = CallingConvention.Winapi)]
        static extern IntPtr GlobalAlloc(uint flags, UIntPtr bytes);

        [DllImport("kernel32", CallingConvention = CallingConvention.Winapi)]
        static extern IntPtr GlobalLock(IntPtr block);

        [DllImport("kernel32", CallingConvention = CallingConvention.Winapi)]
        static extern int GlobalUnlock(IntPtr block);

        [DllImport("kernel32", CallingConvention = CallingConvention.Winapi)]
        static extern UIntPtr GlobalSize(IntPtr block);

        [DllImport("kernel32", CallingConvention = CallingConvention.Winapi)]
        static extern IntPtr GlobalFree(IntPtr block);

        [DllImport("libc", CallingConvention = CallingConvention.Cdecl)]
        static extern IntPtr calloc(UIntPtr count, UIntPtr bytes);

        [DllImport("libc", CallingConvention = CallingConvention.Cdecl)]
        static extern void free(IntPtr start);
    }
}
