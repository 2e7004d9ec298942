// A host in C# that makes a portrait:
//     Host.exe PHOTO.bmp PORTRAIT.bmp
using System;

namespace OrvaneHost
{
    static class Host
    {
        // The exit codes. 1 is left to the runtime's own failures.
        const int Portrait = 0, Usage = 2, NoLibrary = 3, NoPhoto = 4, Failed = 5, NotWritten = 6, NoFace = 10,
                  Cancelled = 20;

        static int Main(string[] arguments)
        {
            if (arguments.Length != 2) return Fail(Usage, "usage: Host.exe PHOTO.bmp PORTRAIT.bmp");
            string photoName = arguments[0], portraitName = arguments[1];
            Block photo;
            try
            {
                photo = BitmapFile.Read(photoName);
            }
            catch (FileProblem problem)
            {
                return Fail(NoPhoto, photoName + " " + problem.Message);
            }
            catch (OutOfMemoryException)
            {
                return Fail(NoPhoto, photoName + " is too large for the memory");
            }
            using (photo)
            {
                try
                {
                    return Convert(photo, photoName, portraitName);
                }
                catch (DllNotFoundException)
                {
                    return Fail(NoLibrary, "the library can't be loaded: Orvane.dll (liborvane.so) was not found");
                }
                catch (BadImageFormatException)
                {
                    return Fail(NoLibrary, "the library can't be loaded: it is not one for programs of " +
                                               8 * IntPtr.Size + " bits");
                }
                catch (EntryPointNotFoundException missing)
                {
                    return Fail(NoLibrary, "the library has no function " + missing.Message);
                }
                catch (OrvaneException failure)
                {
                    return Fail(Failed, photoName + ": " + failure.Message);
                }
                catch (FileProblem problem)
                {
                    return Fail(NotWritten, portraitName + " " + problem.Message);
                }
            }
        }

        static int Convert(Block photo, string photoName, string portraitName)
        {
            using (Session session = new Session())
            {
                // A file in the library's folder; without it the operator's texts are English.
                session.SetLanguage("german.txt");
                session.ShowWindow(false);
                session.SetSize(480, 640);
                session.SetCropRatio(1.0f); // leaves room above the hair
                session.Enable(PortraitAction.All, false);
                session.Enable(PortraitAction.Crop, true);
                session.Enable(PortraitAction.CorrectColour, true);

                Result result = session.Detect(photo);
                // After "no face" too there is an output, the photo as it was worked on; it is no portrait.
                if (result == Result.NoFace) return Fail(NoFace, photoName + ": " + Session.Words(result));
                if (result == Result.Cancelled) return Fail(Cancelled, photoName + ": " + Session.Words(result));
                using (Block portrait = session.Output())
                {
                    BitmapFile.Write(portraitName, portrait);
                    BitmapHeader header = BitmapFile.HeaderOf(portrait);
                    Console.WriteLine(portraitName + ": " + header.Width + "x" + header.Height + " pixels");
                }
                return Portrait;
            }
        }

        static int Fail(int code, string line)
        {
            Console.Error.WriteLine(line);
            return code;
        }
    }
}
