// Internal: merging equal vertices and removing duplicate faces.
#pragma once

namespace obj_adapter {

struct ObjModel;

// Merges vertices at equal positions, removes faces that lose a corner by it,
// sorts both tables and removes duplicate faces of one group.
//
// after   vertices ascend strictly by x, y, z (NaN aside); faces ascend by
//         their sorted vertex indices and have three different ones; group
//         lists ascend; hasConflictingFaces tells whether two faces over the
//         same vertices remain. Texture points and normals are as before.
// ties    the record that came first in the table comes first, and survives.
// odd     NaN comes after every number in its coordinate and merges with
//         whatever vertex ends up before it, as Vertex::operator== has it.
//         Positions count, not the index fields. A face that names a vertex
//         outside the table is removed.
// cost    near linear in vertices and faces
// memory  four bytes for each vertex, and little more than 1 MB for the copies
//         that sorting works on. All of it is asked for before anything changes:
//         when it runs out, the model is as it was
void compactData(ObjModel& model);

}  // namespace obj_adapter
