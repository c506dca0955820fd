// OBJ_ADAPTER_API marks what the shared library exports, one function or
// constant at a time: a class as a whole is never marked, so that nothing gets
// out that is not meant for hosts. Nor does MSVC's warning C4251, on members of
// an exported class whose own class is not exported, have anything to say then.
#pragma once

#include <obj_adapter/sameRuntime.h>

#if defined(_WIN32)
#if defined(OBJ_ADAPTER_BUILDING)
#define OBJ_ADAPTER_API __declspec(dllexport)
#else
#define OBJ_ADAPTER_API __declspec(dllimport)
#endif
#else
#define OBJ_ADAPTER_API __attribute__((visibility("default")))
#endif
