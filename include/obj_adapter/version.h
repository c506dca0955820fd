// The version of the headers that a host was compiled with. The build takes the
// project's version number from here.
#pragma once

#define OBJ_ADAPTER_VERSION_MAJOR 0
#define OBJ_ADAPTER_VERSION_MINOR 1
#define OBJ_ADAPTER_VERSION_PATCH 0
