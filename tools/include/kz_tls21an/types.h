/// Basic types of the tools library: the text unit and the export mark.
#ifndef KZ_TLS21AN_TYPES_H
#define KZ_TLS21AN_TYPES_H

#include <cstddef>
#include <cstdint>

#if defined(_WIN32)
typedef wchar_t kz_Char;
#define KZ_T(text) L##text
#else
/// One UTF-16 code unit. All text of the suite is made of these.
typedef char16_t kz_Char;
/// A text literal of kz_Char.
#define KZ_T(text) u##text
#endif

#if defined(_WIN32)
#if defined(KZ_TLS_BUILD)
#define KZ_TLS_API __declspec(dllexport)
#else
#define KZ_TLS_API __declspec(dllimport)
#endif
#else
#define KZ_TLS_API __attribute__((visibility("default")))
#endif

/// Function that destroys one element of a list; gets what was inserted, never NULL.
typedef void (*kz_Destructor)(void* element);

#endif
