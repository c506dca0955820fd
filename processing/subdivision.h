// Internal: Loop subdivision of the triangle mesh.
#pragma once

namespace obj_adapter {

struct ObjModel;

// What bounds the number of rounds.
enum SubdivisionLimit : int {
    LIMIT_ITERATIONS = 0,    // that many rounds
    LIMIT_FACE_COUNT = 1,    // while four times the faces are fewer
    LIMIT_VERTEX_COUNT = 2,  // while twice the vertices are fewer
};

// Runs rounds up to the limit, each announced to the host before it begins.
// Refuses, with a message, a model with conflicting faces. Another limit type
// does nothing.
//
// before  compactData() has run: neighbours are found by shared vertex index
// after   faces and vertices as the last round left them; every face without
//         normals, group lists ascending
// limits  a round that would give more records than an int can count throws
//         std::length_error before anything changes
// memory  each round asks for all of it before anything changes: when it runs
//         out, the model is the one before the round
void subdivide(int limitType, int limit, ObjModel& model);

}  // namespace obj_adapter
