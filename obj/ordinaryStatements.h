// Internal: the short way of statements as nearly every file writes them.
#pragma once

#include <string_view>

namespace obj_adapter {

class FaceReader;
struct ObjModel;

// Reads runs of v, vt, vn, f and usemtl lines directly from a block of text: one pass
// over the bytes, where the plain way finds the line, cuts tokens and converts each.
//
// Only what needs no message, no memory and no thought is ordinary: plain decimal
// numbers, indices of records that are there, room in the tables. At any other line
// the run ends, with nothing done for that line, and the caller reads it the plain
// way, which alone says what a line means. So the result is that of the plain way,
// to the last bit.
class OrdinaryStatements {
public:
    OrdinaryStatements(ObjModel& ownModel, FaceReader& ownFaceReader) noexcept
        : model(ownModel), faceReader(ownFaceReader) {}

    // Reads from the beginning of the lines as far as they are ordinary; returns how
    // many bytes that took. currentMaterial follows usemtl.
    //
    // lines  whole ones, as LogicalLineReader::getReadyLines() gives them
    std::size_t read(std::string_view lines, int& currentMaterial);

private:
    const char* readVertices(const char* position, const char* end) noexcept;
    const char* readTexturePoints(const char* position, const char* end) noexcept;
    const char* readNormals(const char* position, const char* end) noexcept;
    const char* readFaces(const char* position, const char* end, int currentMaterial);
    const char* readMaterialSelection(const char* position, int& currentMaterial) noexcept;

    ObjModel& model;
    FaceReader& faceReader;
};

}  // namespace obj_adapter
