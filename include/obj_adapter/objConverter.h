// The converter: the library's one entry point.
#pragma once

#include <obj_adapter/export.h>
#include <obj_adapter/geometryRecords.h>
#include <obj_adapter/group.h>
#include <obj_adapter/material.h>
#include <obj_adapter/objHierarchyNode.h>

#include <cstddef>

namespace obj_adapter {

struct ConverterState;

// Imports Wavefront OBJ files, with the MTL libraries that they name, into
// tables that the host reads by index.
//
// Ownership: the converter owns every record; getters lend pointers. A pointer
//            holds until its table grows or is rebuilt (the next import) or
//            clearInstance() is called. Texts given to setters are copied; a
//            null text counts as the empty one.
// Threads:   one thread at a time; the callback runs inside the import.
// Errors:    the import returns a code; the reasons go to the callback. Nothing
//            here throws. When memory runs out, a setter keeps the earlier
//            value.
// Process:   an import leaves the locale, errno, strtok, the floating-point
//            mode and the current directory as they were, and gives the same
//            bits whatever they are.
class ObjConverter {
public:
    OBJ_ADAPTER_API static const int CONVERTER_OK = 1;     // every stage ran
    OBJ_ADAPTER_API static const int CONVERTER_ERROR = 0;  // no input file, or a stage gave up

    // The levels of a message.
    static constexpr int MESSAGE_ERROR = 1;        // a line, file or model could not be processed
    static constexpr int MESSAGE_WARNING = 2;      // a value was repaired, overridden or ignored
    static constexpr int MESSAGE_INFORMATION = 3;  // progress and statistics

    // The stages that setProgressCallback tells of. Each round of subdivision is a
    // stage of its own.
    static constexpr int STAGE_READING = 1;
    static constexpr int STAGE_COMPACTION = 2;
    static constexpr int STAGE_SUBDIVISION = 3;

    // The one converter of the process, made with all defaults on the first
    // call and on the first call after clearInstance(). Null if there is no
    // memory for it.
    OBJ_ADAPTER_API static ObjConverter* getInstance() noexcept;

    // Destroys the converter with its model and its settings, if there is one.
    // Does nothing while an import runs.
    OBJ_ADAPTER_API static void clearInstance() noexcept;

    // The same as clearInstance() for a host that holds the pointer.
    OBJ_ADAPTER_API ~ObjConverter();
    ObjConverter(const ObjConverter&) = delete;
    ObjConverter& operator=(const ObjConverter&) = delete;

    // --- Settings: for the next import, kept until changed -------------------

    // Directory and file from one UTF-8 path, parted at the last '/' or '\':
    // "C:\data\a.obj" gives the path "C:\data/" and the file "a.obj". A bare
    // "a.obj" is taken for a directory, so no file is set: write "./a.obj".
    OBJ_ADAPTER_API void setInput(const char* fileName) noexcept;
    OBJ_ADAPTER_API void setInputPath(const char* path) noexcept;  // as it is, "/" included
    OBJ_ADAPTER_API void setInputFile(const char* fileName) noexcept;

    // Stored like the input, the file without its extension; nothing uses them.
    OBJ_ADAPTER_API void setOutput(const char* fileName) noexcept;
    OBJ_ADAPTER_API void setOutputPath(const char* path) noexcept;
    OBJ_ADAPTER_API void setOutputFile(const char* fileName) noexcept;

    // Loop subdivision until a limit: "ITERATIONS" rounds, or while four times
    // the faces are fewer than value ("FACE_COUNT"), or while twice the
    // vertices are ("VERTEX_COUNT"). A value of 0 or less: none, the default.
    // Another limit type is reported by the import and counts as "ITERATIONS".
    OBJ_ADAPTER_API void setSubdivisionRounds(const char* limitType, int value) noexcept;

    // Merge equal vertices, sort the faces and remove duplicates. Default true.
    // Subdivision needs it and turns it on, for good.
    OBJ_ADAPTER_API void setDataCompaction(bool compact) noexcept;

    // The tree of groups follows the components of their names (default false:
    // all groups hang under one root).
    OBJ_ADAPTER_API void setUseGroupNameHierarchy(bool useHierarchy) noexcept;

    // The import reverses the components of compound names, for files that
    // write the innermost name first. Only with the hierarchy. Default false.
    OBJ_ADAPTER_API void setHierarchyReverseGroupNames(bool reverse) noexcept;

    // Nodes are called by their last component alone. Default true.
    OBJ_ADAPTER_API void setHierarchyShowLastNamesOnly(bool lastNamesOnly) noexcept;

    // A polygon none of whose corners can be cut off (one that runs back along
    // its own side, say) makes the import run without end. True: it is reported
    // and skipped instead, which a host that must not hang wants. Default false.
    OBJ_ADAPTER_API void setSkipPolygonsWithoutEar(bool skip) noexcept;

    // Where the messages go: a level and a text that holds during the call
    // only. Null removes it; messages are then dropped.
    //
    // Inside the callback, getters answer with what is there, settings take
    // effect where the import reads them next, a second import returns
    // CONVERTER_ERROR at once and clearInstance() does nothing. What the
    // callback throws stays inside the library and may end the import.
    OBJ_ADAPTER_API void setMsgCallback(void (*callback)(int level, const char* text)) noexcept;

    // Asked when a stage begins and about every million units of work in it (bytes
    // read, records moved, corners tested): false ends the import at the next safe
    // point, with "Stopping conversion... Cancelled by host" and CONVERTER_ERROR,
    // and leaves the tables as after any import that ended early. Null removes it.
    //
    // userData  handed back as it is
    // stage     one of the STAGE_... constants
    // fraction  how much of the stage is done, from 0 to 1; stays 0 while a stream
    //           of unknown length is read
    //
    // Inside it, as inside the message callback, getters answer with what is there;
    // but in STAGE_COMPACTION and STAGE_SUBDIVISION the tables are in the midst of a
    // change: do not write through pointers then. What it throws counts as false.
    OBJ_ADAPTER_API void setProgressCallback(bool (*callback)(void* userData, int stage,
                                                              double fraction),
                                             void* userData) noexcept;

    // --- Import ---------------------------------------------------------------

    // Reads, compacts and subdivides as set; returns when all is done, with
    // CONVERTER_OK or CONVERTER_ERROR.
    //
    // fileName  as for setInput. Null keeps the earlier input.
    //
    // Tables are not emptied first: a second import appends. After an error,
    // what was read so far stays readable.
    OBJ_ADAPTER_API int importObjDataFromFile(const char* fileName) noexcept;

    // The same for an OBJ text in memory: archives, networks, browsers. The bytes are
    // read as they are, on every platform.
    //
    // name         what the file would be called, "cube.obj": names the model and its
    //              first group. Null or empty: "No input file specified."
    // text, size   hold until the import returns
    // openLibrary  called for each mtllib statement with the name that stands there:
    //              stores text and size of the library, which hold until the import
    //              returns, and returns true, or false if there is none such. Null:
    //              no library is found.
    // userData     handed to openLibrary as it is
    //
    // The input that was set for files stays set, and is not used.
    OBJ_ADAPTER_API int importObjDataFromMemory(
        const char* name, const char* text, std::size_t size,
        bool (*openLibrary)(void* userData, const char* libraryName, const char** text,
                            std::size_t* size),
        void* userData) noexcept;

    // Where the reader stands, for use inside the callbacks: the file, or library,
    // that is being read, and the line in it, from 1; of lines joined by a backslash
    // the first. Null and 0 when nothing is being read; behind the last line, where
    // what was tallied is reported, the line is 0. The text holds until the callback
    // returns.
    OBJ_ADAPTER_API const char* getCurrentFileName() const noexcept;
    OBJ_ADAPTER_API int getCurrentLineNumber() const noexcept;

    // --- The model ------------------------------------------------------------

    OBJ_ADAPTER_API int getNumberOfVertices() const noexcept;
    OBJ_ADAPTER_API int getNumberOfVertexTextures() const noexcept;
    OBJ_ADAPTER_API int getNumberOfVertexNormals() const noexcept;
    OBJ_ADAPTER_API int getNumberOfFaces() const noexcept;
    OBJ_ADAPTER_API int getNumberOfGroups() const noexcept;
    OBJ_ADAPTER_API int getNumberOfMaterials() const noexcept;

    // 0 <= index < the number of that record; not checked.
    OBJ_ADAPTER_API Vertex* getVertex(int index) noexcept;
    OBJ_ADAPTER_API TexturePoint* getVertexTexture(int index) noexcept;
    OBJ_ADAPTER_API NormalPoint* getVertexNormal(int index) noexcept;
    OBJ_ADAPTER_API Face* getFace(int index) noexcept;
    OBJ_ADAPTER_API Group* getGroup(int index) noexcept;
    OBJ_ADAPTER_API Material* getMaterial(int index) noexcept;

    // The tree of groups, built anew by every call: the tree of the call before
    // is destroyed. Groups of one name get "_1", "_2", ... appended, in the
    // model, for good. Null if there is no memory for it.
    OBJ_ADAPTER_API ObjHierarchyNode* getRootOfHierarchy() noexcept;

private:
    explicit ObjConverter(ConverterState* ownState) noexcept : state(ownState) {}

    ConverterState* state;
};

}  // namespace obj_adapter
