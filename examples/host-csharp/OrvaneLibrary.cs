// The twelve functions, as the header orvane/orvane.h declares them. They are plain cdecl exports in the 32-bit library
// too. Handles are IntPtr, as wide as the process, so that one and the same program serves both widths.
using System;
using System.Runtime.InteropServices;

namespace OrvaneHost
{
    enum Result
    {
        Ok = 0,
        NoFace = 10,
        Cancelled = 20,
        LockFailed = -1,
        BadArgument = -10,
        CaptureFailed = -30,
        StepFailed = -40,
        NoMemory = -50,
        NoPicture = -60,
        NoClassifier = -70,
        NoSession = -80
    }

    enum PortraitAction
    {
        All = -1,
        Crop = 0,
        RemoveBackground = 1,
        CorrectColour = 2,
        Rotate = 3
    }

    static class OrvaneLibrary
    {
        // Orvane.dll on Windows, where case does not count, and liborvane.so elsewhere: each runtime adds what its
        // system wants. Host.exe.config tells Mono of liborvane.so.1, which is there without development files.
        const string Name = "orvane";

        [DllImport(Name, CallingConvention = CallingConvention.Cdecl)]
        public static extern Result orv_InitDLL();

        [DllImport(Name, CallingConvention = CallingConvention.Cdecl)]
        public static extern Result orv_ReleaseDLL();

        [DllImport(Name, CallingConvention = CallingConvention.Cdecl, CharSet = CharSet.Ansi, BestFitMapping = false,
                   ThrowOnUnmappableChar = true)]
        public static extern Result orv_SetLanguageFile(string path);

        [DllImport(Name, CallingConvention = CallingConvention.Cdecl)]
        public static extern Result orv_SetOwnerWindow(IntPtr owner);

        [DllImport(Name, CallingConvention = CallingConvention.Cdecl)]
        public static extern Result orv_SetVisibleMode(int visible);

        [DllImport(Name, CallingConvention = CallingConvention.Cdecl)]
        public static extern Result orv_SetSizeOutputImage(int width, int height);

        [DllImport(Name, CallingConvention = CallingConvention.Cdecl)]
        public static extern Result orv_SetFaceCropRatio(float ratio);

        [DllImport(Name, CallingConvention = CallingConvention.Cdecl)]
        public static extern Result orv_EnableAction(PortraitAction action, int enable);

        [DllImport(Name, CallingConvention = CallingConvention.Cdecl)]
        public static extern int orv_GetBitDepth(IntPtr dib);

        [DllImport(Name, CallingConvention = CallingConvention.Cdecl)]
        public static extern Result orv_DetectFacePicture(IntPtr dib);

        [DllImport(Name, CallingConvention = CallingConvention.Cdecl)]
        public static extern Result orv_DetectFaceLive(int deviceIndex);

        [DllImport(Name, CallingConvention = CallingConvention.Cdecl)]
        public static extern Result orv_GetOutputImage(out IntPtr dib);
    }
}
