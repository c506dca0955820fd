// Internal: the short way of statements as nearly every file writes them.
#pragma once

namespace obj_adapter {

class FaceReader;
class LogicalLineReader;
struct ObjModel;

// Reads runs of v, vt, vn, f, usemtl, g and o lines, comments and empty lines directly
// from a block of text: one pass over the bytes, where the plain way finds the line, cuts
// tokens and converts each.
//
// Only what needs no message, no thought and, polygons and groups apart, no memory is
// ordinary: plain decimal numbers, indices of records that are there, room in the tables.
// At any other line the run ends, with nothing done for that line, and the caller reads it
// the plain way, which alone says what a line means. So the result is that of the plain
// way, to the last bit.
class OrdinaryStatements {
public:
    OrdinaryStatements(ObjModel& ownModel, FaceReader& ownFaceReader) noexcept
        : model(ownModel), faceReader(ownFaceReader) {}

    // Takes the ready lines as far as they are ordinary. currentMaterial follows
    // usemtl.
    void read(LogicalLineReader& lines, int& currentMaterial);

private:
    // Each reads lines of its own kind, counts them, and returns where the next line
    // begins.
    template <typename Statement>
    const char* readPoints(LogicalLineReader& lines, const char* position,
                           const char* end) noexcept;
    const char* readFaces(LogicalLineReader& lines, const char* position, const char* end,
                          int currentMaterial);
    const char* readOther(LogicalLineReader& lines, const char* position, const char* end,
                          int& currentMaterial);
    const char* readGroup(LogicalLineReader& lines, const char* position, const char* end);
    const char* readMaterialSelection(const char* position, int& currentMaterial) noexcept;

    ObjModel& model;
    FaceReader& faceReader;
};

}  // namespace obj_adapter
