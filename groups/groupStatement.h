// Internal: the g and o statements of an OBJ file.
#pragma once

namespace obj_adapter {

class LineTokens;
struct ObjModel;

// g name ... | o name ...
//
// Makes a new group from the rest of the line, which faces join from now on:
// without a name "default", with one a simple group, with more a compound one.
void handleGroupStatement(ObjModel& model, LineTokens& tokens);

}  // namespace obj_adapter
