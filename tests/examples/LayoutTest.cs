// LayoutTest.exe HEADER: what the host in C# declares is what the header says, in processes of either width: every
// function with its types and its calling convention, the bitmap's header, and the form of a block.
using System;
using System.Collections.Generic;
using System.IO;
using System.Reflection;
using System.Runtime.InteropServices;
using System.Text;
using System.Text.RegularExpressions;

namespace OrvaneHost
{
    static class LayoutTest
    {
        static int failures;

        static int Main(string[] arguments)
        {
            FunctionsAreThoseOfTheHeader(File.ReadAllText(arguments[0]));
            ImportsHaveTheWidthsOfC(typeof(OrvaneLibrary));
            ImportsHaveTheWidthsOfC(typeof(Block));
            TheBitmapHeaderHas40Bytes();
            ABlockHasTagAndSizeInFront();
            AForeignPointerIsNoBlock();
            if (failures > 0) return 1;
            Console.WriteLine("the host in C# declares what the header says");
            return 0;
        }

        static void Expect(bool holds, string what)
        {
            if (holds) return;
            Console.WriteLine(what);
            ++failures;
        }

        static List<MethodInfo> Imports(Type type)
        {
            List<MethodInfo> imports = new List<MethodInfo>();
            foreach (MethodInfo method in type.GetMethods(BindingFlags.Static | BindingFlags.Public |
                                                          BindingFlags.NonPublic | BindingFlags.DeclaredOnly))
            {
                if (method.IsDefined(typeof(DllImportAttribute), false)) imports.Add(method);
            }
            return imports;
        }

        // A type of C as one of the runtime.
        static Type Counterpart(string type)
        {
            switch (type)
            {
                case "int32_t":
                case "orv_Bool": return typeof(int);
                case "float": return typeof(float);
                case "const char*": return typeof(string);
                case "orv_Handle":
                case "orv_Window": return typeof(IntPtr);
                case "orv_Handle*": return typeof(IntPtr).MakeByRefType();
                default: throw new ArgumentException("the header has a new type: " + type);
            }
        }

        static Type WithoutNames(Type type) { return type.IsEnum ? Enum.GetUnderlyingType(type) : type; }

        static void FunctionsAreThoseOfTheHeader(string header)
        {
            Dictionary<string, MethodInfo> imports = new Dictionary<string, MethodInfo>();
            foreach (MethodInfo import in Imports(typeof(OrvaneLibrary))) imports.Add(import.Name, import);
            MatchCollection functions =
                Regex.Matches(header, @"^ORV_API (\w+) (\w+)\(([^)]*)\);", RegexOptions.Multiline);
            Expect(functions.Count == 12, "the header declares " + functions.Count + " functions");
            Expect(imports.Count == 12, "the host declares " + imports.Count + " functions");
            foreach (Match function in functions)
            {
                string name = function.Groups[2].Value;
                if (!imports.ContainsKey(name))
                {
                    Expect(false, name + " is not declared");
                    continue;
                }
                MethodInfo import = imports[name];
                Expect(WithoutNames(import.ReturnType) == Counterpart(function.Groups[1].Value),
                       name + " gives another type");
                List<Type> types = new List<Type>();
                foreach (Match argument in Regex.Matches(function.Groups[3].Value, @"((?:const )?\w+\*?) \w+"))
                    types.Add(Counterpart(argument.Groups[1].Value));
                ParameterInfo[] parameters = import.GetParameters();
                Expect(parameters.Length == types.Count, name + " has " + parameters.Length + " arguments");
                for (int i = 0; i < Math.Min(parameters.Length, types.Count); ++i)
                    Expect(WithoutNames(parameters[i].ParameterType) == types[i],
                           name + ": argument " + i + " is another type");
                DllImportAttribute how =
                    (DllImportAttribute)import.GetCustomAttributes(typeof(DllImportAttribute), false)[0];
                Expect(how.CallingConvention == CallingConvention.Cdecl, name + " is not called as C calls");
            }
        }

        // Pointers and sizes change with the process; nothing else may.
        static void ImportsHaveTheWidthsOfC(Type type)
        {
            List<Type> fit = new List<Type> { typeof(int), typeof(uint), typeof(float), typeof(IntPtr), typeof(UIntPtr),
                                              typeof(IntPtr).MakeByRefType(), typeof(string), typeof(void) };
            foreach (MethodInfo import in Imports(type))
            {
                Expect(fit.Contains(WithoutNames(import.ReturnType)), import.Name + " gives a type of one width");
                foreach (ParameterInfo parameter in import.GetParameters())
                {
                    Expect(fit.Contains(WithoutNames(parameter.ParameterType)),
                           import.Name + ": " + parameter.Name + " is a type of one width");
                    // The two arguments of size_t, and SIZE_T.
                    if (parameter.Name == "bytes" || parameter.Name == "count")
                        Expect(parameter.ParameterType == typeof(UIntPtr), import.Name + " takes a size of one width");
                }
            }
        }

        static void TheBitmapHeaderHas40Bytes()
        {
            Type header = typeof(BitmapHeader);
            Expect(Marshal.SizeOf(header) == 40, "the bitmap's header has " + Marshal.SizeOf(header) + " bytes");
            Expect((int)Marshal.OffsetOf(header, "Width") == 4, "its width stands elsewhere");
            Expect((int)Marshal.OffsetOf(header, "BitCount") == 14, "its depth stands elsewhere");
            Expect((int)Marshal.OffsetOf(header, "SizeImage") == 20, "its size stands elsewhere");
        }

        static void ABlockHasTagAndSizeInFront()
        {
            using (Block block = Block.Of(new byte[] { 1, 2, 3 }))
            {
                byte[] front = new byte[16];
                Marshal.Copy(IntPtr.Subtract(block.Handle, 16), front, 0, 16);
                Expect(Encoding.ASCII.GetString(front, 0, 8) == "orvblock", "a block has no tag");
                Expect(BitConverter.ToUInt64(front, 8) == 3, "a block does not tell its size");
                Expect(BitConverter.ToString(block.Bytes(99)) == "01-02-03", "a block has other bytes");
                Expect(block.Bytes(2).Length == 2, "a block gives more than was asked for");
            }
        }

        static void AForeignPointerIsNoBlock()
        {
            IntPtr memory = Marshal.AllocHGlobal(64);
            Marshal.Copy(new byte[64], 0, memory, 64);
            Block foreign = new Block(IntPtr.Add(memory, 16));
            Expect(foreign.Bytes(4).Length == 0, "a foreign pointer is taken for a block");
            foreign.Dispose(); // which must not free it
            Marshal.FreeHGlobal(memory);
        }
    }
}
