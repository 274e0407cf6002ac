/* Names the GenTL producer in a file. Written for GenTL 1.5, in C99. */
#include <dlfcn.h>
#include <stdio.h>
#include <string.h>

#include <GenTL/GenTL_v1_5.h>

/* ISO C has no conversion from what dlsym returns to a pointer to a function. */
static int resolve(void* library, const char* name, void* function) {
    void* const found = dlsym(library, name);
    memcpy(function, &found, sizeof found);
    return found != NULL;
}

int main(int argc, char** argv) {
    PGCInitLib init;
    PGCCloseLib closeLib;
    PGCGetInfo getInfo;
    INFO_DATATYPE type = INFO_DATATYPE_UNKNOWN;
    char model[256] = "";
    size_t size = sizeof model;
    GC_ERROR result;
    void* const library = argc == 2 ? dlopen(argv[1], RTLD_NOW | RTLD_LOCAL) : NULL;
    if (library == NULL || !resolve(library, "GCInitLib", &init) ||
        !resolve(library, "GCCloseLib", &closeLib) || !resolve(library, "GCGetInfo", &getInfo)) {
        fputs("usage: producer FILE.cti\n", stderr);
        return 2;
    }
    if (init() != GC_ERR_SUCCESS) return 1;
    result = getInfo(TL_INFO_MODEL, &type, model, &size);
    closeLib();
    dlclose(library);
    if (result != GC_ERR_SUCCESS || type != INFO_DATATYPE_STRING) return 1;
    puts(model);
    return 0;
}
