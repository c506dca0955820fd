// Internal: tokens to numbers.
//
// The rules are those of std::stoi and std::stod in the "C" locale, whatever
// locale the process has set: leading white space is skipped, a sign may stand,
// and what follows the number is ignored. Every failure is an exception whose
// text is the message that the statement reports.
#pragma once

#include "obj/lineTokens.h"

#include <string_view>

namespace obj_adapter {

// Decimal, 32 bits.
//
// std::runtime_error     "No integer found": no token, or an empty text
// std::invalid_argument  "invalid stoi argument": no digits
// std::out_of_range      "stoi argument out of range"
int parseInt(std::string_view text);
int parseInt(const Token& token);

// Decimal with or without an exponent, hexadecimal, infinity or NaN, in any
// letter case; correctly rounded to nearest. A subnormal result is a value.
//
// std::runtime_error     "No float value found": no token
// std::invalid_argument  "invalid stod argument": no number
// std::out_of_range      "stod argument out of range": overflow, or a number
//                        other than zero that rounds to zero
double parseDouble(const Token& token);

}  // namespace obj_adapter
