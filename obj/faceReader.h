// Internal: the f statement, and the repair of indices at the end of a file.
#pragma once

#include "obj/lineTokens.h"
#include "processing/triangulation.h"

#include <obj_adapter/geometryRecords.h>

#include <cstddef>
#include <vector>

namespace obj_adapter {

struct ConverterSettings;
struct ObjModel;

// OBJ index (one-based, or negative from the end) to table index, where count
// records have been read so far.
//
// The upper end is left open on purpose: a triangle may name a vertex that
// comes later in the file; repairFaceIndices() closes it.
//
// Throws std::runtime_error "Index too low." below the first record.
int resolveIndex(int value, int count);

// vertex | vertex/texture | vertex//normal | vertex/texture/normal
//
// Each part is converted and resolved before the next is looked at, so the
// first fault is the one reported. Throws std::exception with its text.
FaceElement parseFaceElement(const ObjModel& model, const Token& token);

// Reads f statements; keeps its lists between them.
class FaceReader {
public:
    FaceReader(ObjModel& ownModel, const ConverterSettings& ownSettings) noexcept
        : model(ownModel), settings(ownSettings) {}

    // f corner corner corner ...
    //
    // Adds one triangle, or the triangles of the polygon, to the model and to
    // its current group. A statement that cannot be used is reported and
    // skipped.
    void readFaceStatement(LineTokens& tokens, int currentMaterial);

    // The same for statements of plain indices of records that are there, as far as they
    // follow each other line by line; adds their number to count. Returns end, or where the
    // first line begins that is no such statement; nothing is done for that one. A table
    // without room ends them, too.
    //
    // The faces join their group only at the next call of joinPendingFaces, which must
    // come before anything looks at the groups: any other statement, the host.
    const char* readOrdinaryFaces(const char* position, const char* end, int currentMaterial,
                                  std::size_t& count);
    void joinPendingFaces();

    // Whether every index of the faces added here was seen to lie in its table.
    bool areIndicesProven() const noexcept { return indicesAreProven; }

private:
    void proveIndices() noexcept;
    const char* tryToReadOrdinaryPolygon(const Face& begun, const char* position,
                                         int currentMaterial) noexcept;
    const char* readOrdinaryPolygon(const Face& begun, const char* position, int currentMaterial);
    void completeFace(Face& face, int currentMaterial) const noexcept;
    void addTriangle(int currentMaterial);
    void addPolygon(int currentMaterial);

    ObjModel& model;
    const ConverterSettings& settings;
    Triangulator triangulator;
    std::vector<FaceElement> corners;
    std::vector<Face> triangles;
    std::size_t pendingFaces = 0;  // the last of the table, in no group's list yet
    bool indicesAreProven = true;
};

// Moves every index that lies outside its table to the nearest end of it, and
// reports the number of faces changed. Where the table is empty, an index past its
// end becomes NO_INDEX and a negative one 0 (a vertex index of NO_INDEX too, which
// an earlier import without vertices leaves): stages check before they follow one.
void repairFaceIndices(ObjModel& model);

}  // namespace obj_adapter
