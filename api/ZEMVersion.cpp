#include "api/ZEMVersion.h"

// ZEM_LIBRARY_VERSION comes from the build (the project's version).
extern "C" const char* ZEMLibraryVersion(void) { return ZEM_LIBRARY_VERSION; }
