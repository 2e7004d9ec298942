// The library's one session: open from the constructor to Dispose. All calls come from one thread.
using System;

namespace OrvaneHost
{
    // A call failed: its result is below zero.
    sealed class OrvaneException : Exception
    {
        public readonly Result Result;

        public OrvaneException(string call, Result result)
            : base(call + ": " + Session.Words(result) + " (" + (int)result + ")")
        {
            Result = result;
        }
    }

    sealed class Session : IDisposable
    {
        public Session() { Expect("orv_InitDLL", OrvaneLibrary.orv_InitDLL()); }

        public void Dispose() { OrvaneLibrary.orv_ReleaseDLL(); }

        // Texts of the operator's window, of a file in the library's folder. False when there is none of that name.
        public bool SetLanguage(string file)
        {
            Result result = OrvaneLibrary.orv_SetLanguageFile(file);
            if (result == Result.BadArgument) return false;
            Expect("orv_SetLanguageFile", result);
            return true;
        }

        public void SetOwner(IntPtr window)
        {
            Expect("orv_SetOwnerWindow", OrvaneLibrary.orv_SetOwnerWindow(window));
        }

        // Hidden, the operator's window opens only where no face is found.
        public void ShowWindow(bool visible)
        {
            Expect("orv_SetVisibleMode", OrvaneLibrary.orv_SetVisibleMode(visible ? 1 : 0));
        }

        public void SetSize(int width, int height)
        {
            Expect("orv_SetSizeOutputImage", OrvaneLibrary.orv_SetSizeOutputImage(width, height));
        }

        // How much is left around the face: the crop is three times `ratio` face heights high.
        public void SetCropRatio(float ratio)
        {
            Expect("orv_SetFaceCropRatio", OrvaneLibrary.orv_SetFaceCropRatio(ratio));
        }

        public void Enable(PortraitAction action, bool enabled)
        {
            Expect("orv_EnableAction", OrvaneLibrary.orv_EnableAction(action, enabled ? 1 : 0));
        }

        // Finds the face of a packed bitmap: Ok, NoFace or Cancelled.
        public Result Detect(Block photo)
        {
            Result result = Expect("orv_DetectFacePicture", OrvaneLibrary.orv_DetectFacePicture(photo.Handle));
            GC.KeepAlive(photo);
            return result;
        }

        // The same of a camera's live picture, in the operator's window: Ok or Cancelled.
        public Result DetectLive(int camera)
        {
            return Expect("orv_DetectFaceLive", OrvaneLibrary.orv_DetectFaceLive(camera));
        }

        // What the last detection made, as a packed bitmap.
        public Block Output()
        {
            IntPtr block;
            Expect("orv_GetOutputImage", OrvaneLibrary.orv_GetOutputImage(out block));
            return new Block(block);
        }

        public static string Words(Result result)
        {
            switch (result)
            {
                case Result.Ok: return "done";
                case Result.NoFace: return "no face was found";
                case Result.Cancelled: return "the operator cancelled";
                case Result.LockFailed: return "a memory block could not be locked";
                case Result.BadArgument: return "an argument is bad, or the picture too small";
                case Result.CaptureFailed: return "the camera could not be started";
                case Result.StepFailed: return "a step of the detection failed";
                case Result.NoMemory: return "there is not enough memory";
                case Result.NoPicture: return "the picture can't be used";
                case Result.NoClassifier: return "Orvane.dat beside the library is missing or unusable";
                case Result.NoSession: return "there is no session, no such window or no output";
                default: return "a result that this program does not know";
            }
        }

        static Result Expect(string call, Result result)
        {
            if (result < 0) throw new OrvaneException(call, result);
            return result;
        }
    }
}
