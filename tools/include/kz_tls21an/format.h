/// Formatted text in the conventions of wide text on Windows: %s is kz_Char text, %hs and %S are
/// 8-bit text, %ld and %lx are 32 bits. The arguments keep their types, so a conversion that has no
/// argument, or one of another kind, prints as it stands instead of reading what is not there: any
/// text may be used as a format, also one that comes from a path or from a user.
#ifndef KZ_TLS21AN_FORMAT_H
#define KZ_TLS21AN_FORMAT_H

#include <string>
#include <type_traits>

#include "kz_tls21an/types.h"

/// One argument of a formatted text with its type.
struct kz_FormatArg {
    enum Kind { Integer, Real, Text, NarrowText, Pointer };
    Kind kind;
    /// Size of an Integer in bytes before it was widened: %x of a negative number prints this size.
    int size;
    union {
        int64_t integer;
        double real;
        const kz_Char* text;
        const char* narrow;
        const void* pointer;
    };
};

/// Makes the argument record of one value.
/// Integers, enumerations, floating point, kz_Char and 8-bit text, pointers; nothing else compiles.
template <class T>
kz_FormatArg kz_formatArg(T value) {
    kz_FormatArg arg{};
    if constexpr (std::is_enum_v<T> || std::is_integral_v<T>) {
        arg.kind = kz_FormatArg::Integer;
        arg.size = static_cast<int>(sizeof(T));
        arg.integer = static_cast<int64_t>(value);
    } else if constexpr (std::is_floating_point_v<T>) {
        arg.kind = kz_FormatArg::Real;
        arg.real = static_cast<double>(value);
    } else if constexpr (std::is_convertible_v<T, const kz_Char*>) {
        arg.kind = kz_FormatArg::Text;
        arg.text = value;
    } else if constexpr (std::is_convertible_v<T, const char*>) {
        arg.kind = kz_FormatArg::NarrowText;
        arg.narrow = value;
    } else {
        static_assert(std::is_convertible_v<T, const void*>, "no formatted text for this type");
        arg.kind = kz_FormatArg::Pointer;
        arg.pointer = value;
    }
    return arg;
}

/// Formats into `out`, a buffer of `size` units that always ends up terminated (size 0 writes
/// nothing). Conversions: d i u x X o c s S f e E g G p and %%, with flags, width, precision (also
/// *), and the sizes hh h l ll I64 w. A NULL text prints "(null)"; %c of 0 writes a zero unit,
/// which counts as written. A conversion with an argument of another kind prints as it stands and
/// uses that argument up; one that is unknown or has no argument uses none. A width or precision
/// above 2^20 counts as 2^20.
/// @return units written without the terminator; the text is cut at size - 1
KZ_TLS_API int kz_Str_formatArgs(kz_Char* out, size_t size, const kz_Char* format,
                                 const kz_FormatArg* args, size_t count);

/// The same as a new text of any length.
KZ_TLS_API std::u16string kz_Str_formatText(const kz_Char* format, const kz_FormatArg* args,
                                            size_t count);

/// kz_Str_formatArgs with the arguments in place.
template <class... Args>
int kz_Str_format(kz_Char* out, size_t size, const kz_Char* format, Args... args) {
    if constexpr (sizeof...(Args) == 0) {
        return kz_Str_formatArgs(out, size, format, nullptr, 0);
    } else {
        const kz_FormatArg list[] = {kz_formatArg(args)...};
        return kz_Str_formatArgs(out, size, format, list, sizeof...(Args));
    }
}

#endif
