// A complete host in C#: imports an OBJ file and prints what came of it.
using System;
using System.Runtime.InteropServices;

static class FirstImport {
    const string Library = "obj_adapter_c";
    delegate void MessageCallback(IntPtr userData, int level, IntPtr text);
    [StructLayout(LayoutKind.Sequential)]
    struct TreeNode { public IntPtr Name; public int Parent, FirstChild, NextSibling, Group; }

    [DllImport(Library)] static extern IntPtr objAdapterCreateSettings();
    [DllImport(Library)] static extern void objAdapterSetSkipPolygonsWithoutEar(IntPtr settings, int yes);
    [DllImport(Library)] static extern void objAdapterSetUseGroupNameHierarchy(IntPtr settings, int yes);
    [DllImport(Library)] static extern void objAdapterSetMessageCallback(IntPtr settings, MessageCallback callback, IntPtr userData);
    [DllImport(Library)] static extern int objAdapterImportFile(IntPtr settings, string fileName);
    [DllImport(Library)] static extern IntPtr objAdapterGetVertices(out int count);
    [DllImport(Library)] static extern IntPtr objAdapterGetFaces(out int count);
    [DllImport(Library)] static extern int objAdapterGetNumberOfMaterials();
    [DllImport(Library)] static extern IntPtr objAdapterGetTree(out int count);

    static int Main(string[] arguments) {
        MessageCallback showMessage = (userData, level, text) => {
            if (level < 3) Console.Error.WriteLine(Marshal.PtrToStringAnsi(text));
        };
        IntPtr settings = objAdapterCreateSettings();
        objAdapterSetSkipPolygonsWithoutEar(settings, 1);
        objAdapterSetUseGroupNameHierarchy(settings, 1);
        objAdapterSetMessageCallback(settings, showMessage, IntPtr.Zero);
        if (objAdapterImportFile(settings, arguments[0]) != 1) return 1;
        GC.KeepAlive(showMessage);
        objAdapterGetVertices(out int vertexCount);
        objAdapterGetFaces(out int faceCount);
        Console.WriteLine("{0} vertices, {1} faces, {2} materials", vertexCount, faceCount, objAdapterGetNumberOfMaterials());
        IntPtr tree = objAdapterGetTree(out int nodeCount);
        for (int node = 0; node < nodeCount; ++node)
            Console.WriteLine("node " + Marshal.PtrToStringAnsi(Marshal.PtrToStructure<TreeNode>(tree + node * Marshal.SizeOf<TreeNode>()).Name));
        return 0;
    }
}
