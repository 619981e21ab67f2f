/* ZEMVersion.h - the version of the loaded libzemxmps, for programs that
 * report it (zem --version) or check it at run time:
 *
 *   printf("libzemxmps %s\n", ZEMLibraryVersion());     // "libzemxmps 0.1.0"
 *
 * The text is MAJOR.MINOR.PATCH; MAJOR is the library's soname version.
 */
#ifndef ZEMXMPS_VERSION_H
#define ZEMXMPS_VERSION_H

#ifdef __cplusplus
extern "C" {
#endif

/* The library's version as a static NUL-terminated text; never null. */
const char* ZEMLibraryVersion(void);

#ifdef __cplusplus
}
#endif

#endif
