// Contenders that do a part of reading only: floors that no reader goes below.
#pragma once

#include "measuring/contender.h"

namespace obj_adapter::bench {

// Each takes a file's name.
void readBytes(const Arguments& arguments, Measured& measured);
void findLines(const Arguments& arguments, Measured& measured);

// Keywords told apart, every number converted exactly and added up.
void convertNumbers(const Arguments& arguments, Measured& measured);

// That, and records of the library's size written into tables of its kind.
void writeRecords(const Arguments& arguments, Measured& measured);

}  // namespace obj_adapter::bench
