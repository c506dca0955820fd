// How the platform reads text files.
#pragma once

namespace obj_adapter::test {

// Files are read in the platform's text mode. That of Windows makes a line feed
// of a carriage return and a line feed, and ends a file at its first byte 0x1A;
// elsewhere every byte is read as it is. tests/wholeFiles/textModeTest.cpp shows
// each difference that this makes.
#if defined(_WIN32)
inline constexpr bool TEXT_IS_TRANSLATED = true;
#else
inline constexpr bool TEXT_IS_TRANSLATED = false;
#endif

}  // namespace obj_adapter::test
