// Internal: the short way of material statements as nearly every library writes them.
#pragma once

namespace obj_adapter {

class LogicalLineReader;
class MaterialTable;

// Takes the ready lines as far as they are ordinary: one pass from the bytes to the
// record, as obj/ordinaryStatements.h does for the statements of OBJ files.
//
// Ordinary is what needs no message: plain decimal numbers, new names, maps without
// options, in the usual letter case. At any other line, and where memory runs out, the
// run ends with nothing done for that line, and the caller reads it the plain way, which
// alone says what a line means.
void readOrdinaryMtlStatements(LogicalLineReader& lines, MaterialTable& table);

}  // namespace obj_adapter
