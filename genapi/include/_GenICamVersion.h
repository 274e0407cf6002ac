// The version of the interface, from which names of namespaces and environment variables are made.
#ifndef GENICAM_VERSION_NUMBERS_H
#define GENICAM_VERSION_NUMBERS_H

#define GENICAM_VERSION_MAJOR 3
#define GENICAM_VERSION_MINOR 0
#define GENICAM_VERSION_SUBMINOR 2
#define GENICAM_VERSION_BUILD 0

#define GENICAM_MAIN_COMPILER gcc48

#endif  // GENICAM_VERSION_NUMBERS_H
