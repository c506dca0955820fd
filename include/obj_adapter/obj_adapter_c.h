/* Wavefront OBJ import for hosts that do not speak C++: the converter's work by plain functions and
 * arrays, for C, C#, Python's ctypes, Rust and every C++ compiler.
 *
 *     int32_t faceCount;
 *     if (objAdapterImportFile(NULL, "models/cube.obj") == OBJ_ADAPTER_OK)
 *         draw(objAdapterGetFaces(&faceCount), faceCount);
 *     objAdapterClear();
 *
 * One model:  a process has one model at a time, that of the last import. It is also the model of
 *             the one C++ converter, which these functions use and which nobody else should use
 *             beside them.
 * Ownership:  the library owns everything that it lends by pointer. Such a pointer holds until the
 *             next import, the next objAdapterGetTree (which may rename groups) or
 *             objAdapterClear. Nothing is to be written through it.
 * Texts:      bytes of the file without any conversion; paths are UTF-8. All end in a zero byte.
 * Threads:    one thread at a time; callbacks run inside the import.
 * Errors:     nothing is thrown. An index out of range gives a null pointer or 0.
 */
#ifndef OBJ_ADAPTER_C_H
#define OBJ_ADAPTER_C_H

#include <stddef.h>
#include <stdint.h>

#if defined(_WIN32)
#if defined(OBJ_ADAPTER_C_BUILDING)
#define OBJ_ADAPTER_C_API __declspec(dllexport)
#else
#define OBJ_ADAPTER_C_API __declspec(dllimport)
#endif
#else
#define OBJ_ADAPTER_C_API __attribute__((visibility("default")))
#endif

#if defined(__cplusplus)
extern "C" {
#endif

/* --- Records ---------------------------------------------------------------------------------- */

/* Indices are zero-based positions in the tables; this one stands for "none". */
#define OBJ_ADAPTER_NO_INDEX (-1)

/* v x y z [w] */
typedef struct ObjAdapterVertex {
    double x;
    double y;
    double z;
    double w;      /* 1 unless the file gives one */
    int32_t index; /* its own position */
} ObjAdapterVertex;

/* vt u v [w] */
typedef struct ObjAdapterTexturePoint {
    double u;
    double v;
    double w; /* 0 unless the file gives one */
    int32_t index;
} ObjAdapterTexturePoint;

/* vn x y z, not normalised */
typedef struct ObjAdapterNormal {
    double x;
    double y;
    double z;
    int32_t index;
} ObjAdapterNormal;

/* One corner of a face. */
typedef struct ObjAdapterCorner {
    int32_t vertex;
    int32_t texturePoint; /* or OBJ_ADAPTER_NO_INDEX */
    int32_t normal;       /* or OBJ_ADAPTER_NO_INDEX */
} ObjAdapterCorner;

/* A triangle, its corners in the order of the file. */
typedef struct ObjAdapterFace {
    ObjAdapterCorner corners[3];
    int32_t reserved[4]; /* the library's own */
    int32_t material;    /* or OBJ_ADAPTER_NO_INDEX */
    int32_t group;
} ObjAdapterFace;

/* The ways in which a colour is given. */
enum {
    OBJ_ADAPTER_COLOR_NONE = 0,
    OBJ_ADAPTER_COLOR_RGB = 1,      /* red, green, blue, 1 */
    OBJ_ADAPTER_COLOR_XYZ = 2,      /* x, y, z */
    OBJ_ADAPTER_COLOR_SPECTRAL = 3, /* the factor of a spectral file */
};

typedef struct ObjAdapterColor {
    int32_t type; /* OBJ_ADAPTER_COLOR_... */
    float values[4];
    const char* spectralFile; /* empty unless SPECTRAL */
} ObjAdapterColor;

/* One newmtl statement and what follows it; -1 and the like as noted mean "not given". */
typedef struct ObjAdapterMaterial {
    const char* name;
    ObjAdapterColor ambient;  /* Ka */
    ObjAdapterColor diffuse;  /* Kd */
    ObjAdapterColor specular; /* Ks */
    ObjAdapterColor filter;   /* Tf */
    double specularExponent;  /* Ns, or -1 */
    double dissolve;          /* d, or 1 - Tr; 1 is opaque */
    double opticalDensity;    /* Ni */
    int32_t illumination;     /* illum, or -1 */
    int32_t sharpness;
    int32_t halo; /* 1 for d -halo */
} ObjAdapterMaterial;

/* The maps of a material. */
enum {
    OBJ_ADAPTER_MAP_KA = 0,
    OBJ_ADAPTER_MAP_KD = 1,
    OBJ_ADAPTER_MAP_KS = 2,
    OBJ_ADAPTER_MAP_NS = 3,
    OBJ_ADAPTER_MAP_D = 4,
    OBJ_ADAPTER_MAP_BUMP = 6,
    OBJ_ADAPTER_MAP_DECAL = 7,
    OBJ_ADAPTER_MAP_REFL = 8,
};

typedef struct ObjAdapterTextureMap {
    const char* fileName;
    double mmBase;
    double mmGain;
    double offset[3];
    double scale[3];
    double turbulence[3];
    double boost;       /* -1: not given */
    int32_t resolution; /* -1: not given */
    int32_t blendU;
    int32_t blendV;
    int32_t colorCorrection;
    int32_t clamp;
    int32_t imfChannel;     /* 0 none, then r g b m l z */
    int32_t reflectionType; /* 0 none, sphere, cube_top, _bottom, _front, _back, _left, _right */
} ObjAdapterTextureMap;

/* A node of the tree of group names. The root comes first, and every node before its children. */
typedef struct ObjAdapterTreeNode {
    const char* name;
    int32_t parent;      /* position in the tree; OBJ_ADAPTER_NO_INDEX for the root */
    int32_t firstChild;  /* or OBJ_ADAPTER_NO_INDEX */
    int32_t nextSibling; /* or OBJ_ADAPTER_NO_INDEX */
    int32_t group;       /* or OBJ_ADAPTER_NO_INDEX for a mere part of a path */
} ObjAdapterTreeNode;

/* --- Settings --------------------------------------------------------------------------------- */

/* What an import is to do. Every setting has the default of the C++ converter. */
typedef struct ObjAdapterSettings ObjAdapterSettings;

/* Defaults. Null if there is no memory. */
OBJ_ADAPTER_C_API ObjAdapterSettings* objAdapterCreateSettings(void);
OBJ_ADAPTER_C_API void objAdapterDestroySettings(ObjAdapterSettings* settings);

enum {
    OBJ_ADAPTER_SUBDIVIDE_ITERATIONS = 0,   /* value rounds */
    OBJ_ADAPTER_SUBDIVIDE_FACE_COUNT = 1,   /* while four times the faces are fewer than value */
    OBJ_ADAPTER_SUBDIVIDE_VERTEX_COUNT = 2, /* while twice the vertices are */
};

/* Loop subdivision; a value of 0 or less: none, the default. */
OBJ_ADAPTER_C_API void objAdapterSetSubdivision(ObjAdapterSettings* settings, int32_t limitType,
                                                int32_t value);

/* Yes or no: 0 is no. */
OBJ_ADAPTER_C_API void objAdapterSetDataCompaction(ObjAdapterSettings* settings, int32_t yes);
OBJ_ADAPTER_C_API void objAdapterSetUseGroupNameHierarchy(ObjAdapterSettings* settings,
                                                          int32_t yes);
OBJ_ADAPTER_C_API void objAdapterSetReverseGroupNames(ObjAdapterSettings* settings, int32_t yes);
OBJ_ADAPTER_C_API void objAdapterSetShowLastNamesOnly(ObjAdapterSettings* settings, int32_t yes);

/* A polygon that cannot be split is reported and skipped. Without this it makes the import run
 * without end: set it for files from anywhere. Default no. */
OBJ_ADAPTER_C_API void objAdapterSetSkipPolygonsWithoutEar(ObjAdapterSettings* settings,
                                                           int32_t yes);

enum {
    OBJ_ADAPTER_MESSAGE_ERROR = 1,
    OBJ_ADAPTER_MESSAGE_WARNING = 2,
    OBJ_ADAPTER_MESSAGE_INFORMATION = 3,
};

/* Where messages go; the text holds during the call only. Null, the default, drops them. Inside
 * it an import returns OBJ_ADAPTER_ERROR at once and objAdapterClear does nothing. */
typedef void (*ObjAdapterMessageCallback)(void* userData, int32_t level, const char* text);
OBJ_ADAPTER_C_API void objAdapterSetMessageCallback(ObjAdapterSettings* settings,
                                                    ObjAdapterMessageCallback callback,
                                                    void* userData);

enum {
    OBJ_ADAPTER_STAGE_READING = 1,
    OBJ_ADAPTER_STAGE_COMPACTION = 2,
    OBJ_ADAPTER_STAGE_SUBDIVISION = 3, /* each round is a stage of its own */
};

/* Asked when a stage begins and about every million units of work in it, with the share of the
 * stage that is done, from 0 to 1: 0 cancels the import. Null, the default, removes it. The tables
 * are in the midst of a change then and to be left alone. */
typedef int32_t (*ObjAdapterProgressCallback)(void* userData, int32_t stage, double fraction);
OBJ_ADAPTER_C_API void objAdapterSetProgressCallback(ObjAdapterSettings* settings,
                                                     ObjAdapterProgressCallback callback,
                                                     void* userData);

/* --- Import ----------------------------------------------------------------------------------- */

enum {
    OBJ_ADAPTER_ERROR = 0, /* no input file, or a stage gave up; what was read is readable */
    OBJ_ADAPTER_OK = 1,
};

/* Reads the file and does what the settings say; null settings are the defaults. The model of
 * the import before is dropped first.
 *
 * fileName  with a directory: "models/cube.obj" or "./cube.obj". A bare "cube.obj" is taken for a
 *           directory, and nothing is read. */
OBJ_ADAPTER_C_API int32_t objAdapterImportFile(const ObjAdapterSettings* settings,
                                               const char* fileName);

/* Hands over a material library that a text names: stores its text, which holds until the import
 * returns, and returns 1; or returns 0, if there is none such. */
typedef int32_t (*ObjAdapterLibraryCallback)(void* userData, const char* libraryName,
                                             const char** text, size_t* size);

/* The same for an OBJ text in memory.
 *
 * name         what the file would be called, "cube.obj"; null or empty is an error
 * text, size   hold until the import returns; read as they are
 * openLibrary  null: no library is found */
OBJ_ADAPTER_C_API int32_t objAdapterImportMemory(const ObjAdapterSettings* settings,
                                                 const char* name, const char* text, size_t size,
                                                 ObjAdapterLibraryCallback openLibrary,
                                                 void* userData);

/* Where the reader stands, for use inside the callbacks: the file or library that is read and the
 * line in it, from 1. Null and 0 when nothing is read, 0 behind the last line. The text holds
 * until the callback returns. */
OBJ_ADAPTER_C_API const char* objAdapterGetCurrentFileName(void);
OBJ_ADAPTER_C_API int32_t objAdapterGetCurrentLineNumber(void);

/* Drops the model, if there is one. */
OBJ_ADAPTER_C_API void objAdapterClear(void);

/* "0.1.0" */
OBJ_ADAPTER_C_API const char* objAdapterGetVersion(void);

/* --- The model -------------------------------------------------------------------------------- */

/* Each gives the first record of the table, the others following it, and stores how many there
 * are unless count is null. Null where there are none. */
OBJ_ADAPTER_C_API const ObjAdapterVertex* objAdapterGetVertices(int32_t* count);
OBJ_ADAPTER_C_API const ObjAdapterTexturePoint* objAdapterGetTexturePoints(int32_t* count);
OBJ_ADAPTER_C_API const ObjAdapterNormal* objAdapterGetNormals(int32_t* count);
OBJ_ADAPTER_C_API const ObjAdapterFace* objAdapterGetFaces(int32_t* count);

OBJ_ADAPTER_C_API int32_t objAdapterGetNumberOfGroups(void);

/* The components of a group's name: one, or for "g car left wheel" three. */
OBJ_ADAPTER_C_API int32_t objAdapterGetNumberOfGroupNames(int32_t group);
OBJ_ADAPTER_C_API const char* objAdapterGetGroupName(int32_t group, int32_t component);

/* Positions in the face table, as objAdapterGetFaces gives them. */
OBJ_ADAPTER_C_API const int32_t* objAdapterGetGroupFaces(int32_t group, int32_t* count);

OBJ_ADAPTER_C_API int32_t objAdapterGetNumberOfMaterials(void);

/* Each returns 1 and fills the record, or returns 0 and leaves it alone where there is no such
 * material, or no such map. */
OBJ_ADAPTER_C_API int32_t objAdapterGetMaterial(int32_t material, ObjAdapterMaterial* record);
OBJ_ADAPTER_C_API int32_t objAdapterGetTextureMap(int32_t material, int32_t map,
                                                  ObjAdapterTextureMap* record);

/* The tree of group names, built anew by each call; groups of one name get "_1", "_2", ...
 * appended, in the model. Null if there is no memory for it, or no model. */
OBJ_ADAPTER_C_API const ObjAdapterTreeNode* objAdapterGetTree(int32_t* count);

/* Copies a text that the library composes: at most capacity bytes, the final zero included; the
 * buffer may be null where capacity is 0. Returns the length of the whole text without the zero, 0
 * where there is none: "car_left_wheel"; the material as MTL statements. */
OBJ_ADAPTER_C_API size_t objAdapterCopyGroupFullName(int32_t group, char* buffer, size_t capacity);
OBJ_ADAPTER_C_API size_t objAdapterCopyMaterialText(int32_t material, char* buffer,
                                                    size_t capacity);

#if defined(__cplusplus)
}
#endif

#endif
