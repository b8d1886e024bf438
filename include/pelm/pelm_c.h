/* The component for every language: a C interface to its classes, called by name.
 *
 * Contents: values, objects, calls, class objects, the last error, pages, the type library.
 *
 *     pelm_object main_object = 0, conn = 0;
 *     pelm_value result = PELM_EMPTY_VALUE;
 *     pelm_create("PelmComum2008.CMain", &main_object);
 *     pelm_get(main_object, "CConn", NULL, 0, &result);
 *     conn = result.as.object;
 *     ...
 *     pelm_value_clear(&result);
 *     pelm_end(main_object);
 *     pelm_release(main_object);
 *
 * Every function that can fail returns 0 for success and 1 for a failure; pelm_last_error then
 * tells number, source and description, for the calling thread. No exception and no C++ type
 * crosses this line. Texts are UTF-8. Pointers may be null only where said.
 *
 * An object belongs to the thread that got it, as the component's shared objects do: calling it
 * from another thread fails with error 5. Releasing is allowed from anywhere: it takes effect when
 * the object's own thread calls next, or ends.
 */
#ifndef PELM_PELM_C_H
#define PELM_PELM_C_H

#include <stddef.h>
#include <stdint.h>

#if defined(__GNUC__)
#define PELM_API __attribute__((visibility("default")))
#else
#define PELM_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Raised when something in this header changes that a compiled caller would notice. */
#define PELM_ABI_VERSION 1

/* PELM_ABI_VERSION of the library that is loaded; compare before anything else. */
PELM_API uint32_t pelm_abi_version(void);
/* "0.1.0"; never freed. */
PELM_API const char* pelm_version(void);

/* ------------------------------------------------------------------ values */

typedef enum pelm_type {
  PELM_EMPTY = 0,   /* no value yet */
  PELM_NULL = 1,    /* the database's "no value" */
  PELM_INTEGER = 2, /* as.integer, 16 bits */
  PELM_LONG = 3,    /* as.integer, 32 bits */
  PELM_DOUBLE = 4,  /* as.number */
  PELM_BOOLEAN = 5, /* as.integer, 0 or 1 */
  PELM_DATE = 6,    /* as.number: days since 30 December 1899, the time as fraction */
  PELM_TEXT = 7,    /* as.text: UTF-8, `size` bytes, also ended by a zero byte when returned */
  PELM_ARRAY = 8,   /* as.array */
  PELM_OBJECT = 9,  /* as.object; 0 is "nothing" */
  PELM_ABSENT = 10  /* an omitted argument; never returned */
} pelm_type;

/* A reference to an object. 0 is none; a number that was never given out, or was released, is
 * refused with error 5. */
typedef uint64_t pelm_object;

struct pelm_value;

/* A value of any type. Whoever receives one owns it and clears it with pelm_value_clear; values
 * handed in stay the caller's, and their texts and arrays are copied. */
typedef struct pelm_value {
  int32_t type; /* a pelm_type */
  int32_t reserved;
  union {
    int32_t integer;
    double number;
    pelm_object object;
    struct {
      const char* data; /* may be null when size is 0 */
      size_t size;
    } text;
    struct {
      struct pelm_value* items; /* may be null when count is 0 */
      size_t count;
    } array;
  } as;
} pelm_value;

#define PELM_EMPTY_VALUE \
  {                      \
    PELM_EMPTY, 0, { 0 } \
  }

/* Frees what a received value holds and releases its objects; the value is empty afterwards. Null
 * is allowed. Never give it a value whose text you allocated yourself. */
PELM_API void pelm_value_clear(pelm_value* value);

/* ----------------------------------------------------------------- objects */

/* An object by its programmatic identifier, in any case. Error 429 for an unknown one. */
PELM_API int pelm_create(const char* programmatic_identifier, pelm_object* object);
/* Another reference to the same object; both are released. */
PELM_API int pelm_add_ref(pelm_object object, pelm_object* another);
/* Lets a reference go. Error 5 for a reference that is none. 0 is allowed and does nothing. */
PELM_API int pelm_release(pelm_object object);
/* Tells an object that its page has ended (a CMain closes its connections). Does nothing for
 * objects that do not care. */
PELM_API int pelm_end(pelm_object object);
/* The class name in the type library, "CMain"; never freed. Null on failure. */
PELM_API const char* pelm_class_name(pelm_object object);
/* 1 when both refer to one object, else 0. */
PELM_API int pelm_same_object(pelm_object a, pelm_object b);

/* ------------------------------------------------------------------- calls */

/* Calls a method, or reads a property with arguments; an empty name is the default member. An
 * omitted argument has the type PELM_ABSENT; trailing ones may be left out of `count`.
 * By-reference arguments come back in `args`, also when the call fails: an element that changed is
 * then the caller's to clear, and its former text was not touched. `changed`, where not null, holds
 * `count` bytes, set to 1 for the elements that changed and 0 for the others. `result` may be
 * null. */
PELM_API int pelm_call(pelm_object object, const char* name, pelm_value* args, size_t count,
                       unsigned char* changed, pelm_value* result);
/* Reads a property; `index` may be null when `count` is 0. */
PELM_API int pelm_get(pelm_object object, const char* name, const pelm_value* index, size_t count,
                      pelm_value* result);
/* Writes a property. */
PELM_API int pelm_put(pelm_object object, const char* name, const pelm_value* index, size_t count,
                      const pelm_value* value);

/* ----------------------------------------------------------- class objects */

/* A class object makes objects of one class and keeps the library in use while it lives. */
typedef uint64_t pelm_class;

/* Error 429 for an unknown identifier. */
PELM_API int pelm_get_class_object(const char* programmatic_identifier, pelm_class* class_object);
PELM_API int pelm_class_create(pelm_class class_object, pelm_object* object);
PELM_API int pelm_class_release(pelm_class class_object);
/* 1 when no object, class object or page is left, so that the library may be unloaded; else 0. */
PELM_API int pelm_can_unload(void);

/* -------------------------------------------------------------- last error */

typedef struct pelm_error {
  int32_t number; /* 0: the thread's last call did not fail */
  const char* source;
  const char* description;
} pelm_error;

/* The failure of the calling thread's last call; its texts live until that thread's next call. */
PELM_API void pelm_last_error(pelm_error* error);

/* ------------------------------------------------------------------- pages */

/* What a page offers the component; copied when the page begins. `user` is handed through. */
typedef struct pelm_page_callbacks {
  void* user;
  /* Fills `value` with an application variable and returns 1, or returns 0 when there is none of
   * that name. The text is copied before the callback is called again. May be null. */
  int (*application_value)(void* user, const char* name, pelm_value* value);
  /* Takes what is written to the page. May be null. */
  void (*write)(void* user, const char* text, size_t size);
  /* What stands behind the "?" of the page's address: "date=05/03/2008". May be null. */
  const char* query_string;
} pelm_page_callbacks;

typedef uint64_t pelm_page;

/* From here to pelm_page_end this thread serves a page; pages nest. */
PELM_API int pelm_page_begin(const pelm_page_callbacks* callbacks, pelm_page* page);
/* Ends the thread's innermost page, which must be this one. The callbacks are not called any more,
 * by whatever the page left behind. */
PELM_API int pelm_page_end(pelm_page page);

/* ------------------------------------------------------------ type library */

/* The classes, members, arguments and help lines as JSON: of one class, or of all when `name` is
 * null. The result is a text. Error 429 for an unknown class. */
PELM_API int pelm_describe(const char* name, pelm_value* json);

#ifdef __cplusplus
}
#endif

#endif
