// Internal: the model that an import fills, table by table. Hosts read it
// through ObjConverter.
#pragma once

#include "material/materialTable.h"
#include "model/recordLimits.h"
#include "platform/growingArray.h"

#include <obj_adapter/geometryRecords.h>
#include <obj_adapter/group.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace obj_adapter {

class ObjHierarchy;

using FaceTable = platform::GrowingArray<Face>;
using VertexTable = platform::GrowingArray<Vertex>;
using TexturePointTable = platform::GrowingArray<TexturePoint>;
using NormalPointTable = platform::GrowingArray<NormalPoint>;
using GroupTable = platform::GrowingArray<Group>;

// Whether more records ask for no memory and can be counted.
template <typename Table>
bool hasRoomForRecords(const Table& table, std::size_t count) noexcept {
    const std::size_t most = table.capacity() < MAX_RECORDS ? table.capacity() : MAX_RECORDS;
    return count <= most - table.size();
}
template <typename Table>
bool hasRoomForRecord(const Table& table) noexcept {
    return hasRoomForRecords(table, 1);
}

// A record is written where it will stand, before it counts: the table must have room
// for it. Nothing is there yet, not even a record's defaults.
template <typename Table>
typename Table::value_type& recordBehindTheLast(Table& table) noexcept {
    return *table.end();
}
template <typename Table>
void keepRecordBehindTheLast(Table& table) noexcept {
    table.resizeUninitialized(table.size() + 1);
}

// The tables, all by value. The operations on groups stand in
// groups/groupTable.h.
//
// Invariants between stages: a record's index is its position; every face lies
// in the list of exactly one group, the one that its groupIndex names.
struct ObjModel {
    ObjModel();
    ~ObjModel();
    ObjModel(const ObjModel&) = delete;
    ObjModel& operator=(const ObjModel&) = delete;

    GroupTable groups;
    FaceTable faces;
    VertexTable vertices;
    TexturePointTable texturePoints;
    NormalPointTable normalPoints;

    std::string name = "Obj File";

    // Whether the tree in hierarchy fits the groups. Cleared by every change of
    // groups or membership and set by nothing: every request builds anew.
    bool hierarchyValid = false;

    // Two faces over the same vertices that are no duplicates; subdivision
    // refuses those. True until compaction has looked.
    bool hasConflictingFaces = true;

    // The host may hold a pointer to a face and write through it.
    bool areFacesLent = false;

    // The same of groups, by way of the tree as well. True until a reader begins with an
    // empty table: whoever filled it may have left lists as he liked.
    bool areGroupsLent = true;

    MaterialTable materialTable;

    // The tree handed to the host, made on the first request.
    std::unique_ptr<ObjHierarchy> hierarchy;

    // Each sets the record's index to its position, appends a copy and returns
    // the position. std::length_error when the table is full; the table is
    // unchanged after any failure.
    int addVertex(Vertex& vertex);
    int addTexturePoint(TexturePoint& texturePoint);
    int addNormalPoint(NormalPoint& normalPoint);

    // Appends a copy and returns its position.
    int addFace(const Face& face);

    // Puts the face into the current group, which is the last of the table.
    void addFaceToCurrentGroup(int faceIndex);

    // Puts the last faces of the table, which are in no list yet, into the current
    // group; their groupIndex names it already. Nothing changes when memory runs out.
    void addLastFacesToCurrentGroup(std::size_t faceCount);

    // Both of the above, or nothing when memory runs out in between.
    int addFaceInCurrentGroup(const Face& face);

    int getNumberOfVertices() const noexcept { return static_cast<int>(vertices.size()); }
    int getNumberOfTexturePoints() const noexcept { return static_cast<int>(texturePoints.size()); }
    int getNumberOfNormalPoints() const noexcept { return static_cast<int>(normalPoints.size()); }
    int getNumberOfFaces() const noexcept { return static_cast<int>(faces.size()); }
    int getNumberOfGroups() const noexcept { return static_cast<int>(groups.size()); }
};

}  // namespace obj_adapter
