/// Lisp values: one word each, with a reference count on what lives on the heap.
///
/// nil, 32-bit integers and reals stand in the word itself; lists, texts, symbols, functions and
/// names are heap objects. Data can't be changed once it is made, so no cycle arises and counts
/// suffice.
#ifndef HOST_LISP_VALUE_H
#define HOST_LISP_VALUE_H

#include <bit>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <utility>

#include "acad/ads.h"

namespace host::lisp {

enum class Kind : uint8_t {
    Cons,
    Text,
    Symbol,
    Subr,
    UserFunction,
    External,
    EntityName,
    SelectionSet,
    File,
    CaughtError
};

/// What every heap object begins with.
struct Object {
    uint32_t references = 1;
    uint32_t kind : 8;
    /// Place in the sources (see source_map.h) of a list that was read from a file; 0 for none.
    uint32_t place : 24;
    explicit Object(Kind k) : kind(static_cast<uint32_t>(k)), place(0) {}
};

/// Frees an object whose last reference has gone, and what hangs on it, without recursion.
void destroy(Object* object) noexcept;

/// Thrown where a list cell or text would need more memory than Lisp may have: half of the
/// machine's, or KZ_LISP_MEMORY megabytes.
class OutOfSpace : public std::bad_alloc {
  public:
    explicit OutOfSpace(const char* message) : message_(message) {}
    const char* what() const noexcept override { return message_; }

  private:
    const char* message_;
};

struct Cons;
struct Text;
struct Symbol;

class Value {
  public:
    Value() = default;
    Value(const Value& other) : bits_(other.bits_) {
        if (isObject()) ++object()->references;
    }
    Value(Value&& other) noexcept : bits_(std::exchange(other.bits_, 0)) {}
    Value& operator=(const Value& other) {
        Value copy(other);
        swap(copy);
        return *this;
    }
    Value& operator=(Value&& other) noexcept {
        Value taken(std::move(other));
        swap(taken);
        return *this;
    }
    ~Value() {
        if (isObject() && --object()->references == 0) destroy(object());
    }
    void swap(Value& other) noexcept { std::swap(bits_, other.bits_); }

    static Value integer(int32_t number) {
        return Value(kIntegerTag | static_cast<uint32_t>(number));
    }
    static Value real(double number) {
        if (number != number) number = std::numeric_limits<double>::quiet_NaN();
        return Value(std::bit_cast<uint64_t>(number) + kRealOffset);
    }
    /// Takes over the reference that a new object is born with.
    static Value adopt(Object* object) { return Value(std::bit_cast<uint64_t>(object)); }
    /// A further reference to a living object.
    static Value share(Object* object) {
        ++object->references;
        return adopt(object);
    }

    bool isNil() const { return bits_ == 0; }
    explicit operator bool() const { return bits_ != 0; }
    bool isInteger() const { return (bits_ >> 48) == 1; }
    bool isReal() const { return bits_ >= kRealOffset; }
    bool isNumber() const { return bits_ >= kIntegerTag; }
    bool isObject() const { return bits_ - 1 < kIntegerTag - 1; }
    bool is(Kind kind) const { return isObject() && object()->kind == static_cast<uint32_t>(kind); }
    bool isCons() const { return is(Kind::Cons); }
    bool isList() const { return isNil() || isCons(); }
    bool isText() const { return is(Kind::Text); }
    bool isSymbol() const { return is(Kind::Symbol); }

    int32_t integer() const { return static_cast<int32_t>(static_cast<uint32_t>(bits_)); }
    double real() const { return std::bit_cast<double>(bits_ - kRealOffset); }
    /// An integer or real as a real.
    double number() const { return isInteger() ? integer() : real(); }
    Object* object() const {
        return reinterpret_cast<Object*>(bits_);  // NOLINT(performance-no-int-to-ptr)
    }
    template <class T>
    T* as() const {
        return static_cast<T*>(object());
    }
    Cons* cons() const;
    Symbol* symbol() const;
    std::u16string_view text() const;

    /// The same word: the same object, or equal numbers of one type.
    bool same(const Value& other) const { return bits_ == other.bits_; }
    /// Gives the object up when this was its last reference, without freeing it; else NULL.
    Object* takeLast() noexcept {
        Object* held = isObject() ? object() : nullptr;
        bits_ = 0;
        return held && --held->references == 0 ? held : nullptr;
    }

  private:
    static constexpr uint64_t kIntegerTag = uint64_t{1} << 48;
    static constexpr uint64_t kRealOffset = uint64_t{2} << 48;
    explicit Value(uint64_t bits) : bits_(bits) {}

    uint64_t bits_ = 0;
};

struct Cons : Object {
    Value car, cdr;
    Cons(Value first, Value rest)
        : Object(Kind::Cons), car(std::move(first)), cdr(std::move(rest)) {}
};

/// A text; its units follow the record.
struct Text : Object {
    uint32_t length;
    explicit Text(uint32_t count) : Object(Kind::Text), length(count) {}
    char16_t* units() { return reinterpret_cast<char16_t*>(this + 1); }
};

/// A symbol has one cell for everything: a variable and a function of one name are the same thing.
struct Symbol : Object {
    Value value;
    std::u16string name;
    explicit Symbol(std::u16string_view spelling) : Object(Kind::Symbol), name(spelling) {}
};

struct Builtin;

/// A function of the language itself.
struct Subr : Object {
    const Builtin* row;
    const Symbol* name;
    uint32_t number;
    Subr(const Builtin* r, const Symbol* s, uint32_t n)
        : Object(Kind::Subr), row(r), name(s), number(n) {}
};

/// A function made by defun or lambda. Parameters and locals stand in one array, in this order.
struct UserFunction : Object {
    Value parameterList, body;
    std::unique_ptr<Symbol*[]> variables;
    uint32_t parameters = 0, locals = 0;
    Symbol* name = nullptr;
    uint32_t number = 0;
    bool traced = false;
    UserFunction() : Object(Kind::UserFunction) {}
};

/// A function that a native module exports; it fetches its arguments with acedGetArgs.
struct External : Object {
    int (*function)();
    const Symbol* name;
    uint32_t number;
    External(int (*f)(), const Symbol* s, uint32_t n)
        : Object(Kind::External), function(f), name(s), number(n) {}
};

struct EntityName : Object {
    ads_name name;
    explicit EntityName(const ads_name words) : Object(Kind::EntityName) {
        ads_name_set(words, name);
    }
};

/// A selection set; the set is freed in the editor together with this object.
struct SelectionSet : Object {
    ads_name name;
    uint32_t number;
    SelectionSet(const ads_name words, uint32_t n) : Object(Kind::SelectionSet), number(n) {
        ads_name_set(words, name);
    }
    ~SelectionSet();
};

/// An open file. Input is decoded line by line.
struct File : Object {
    std::FILE* stream;
    std::u16string name;
    bool reads;
    std::u16string line;  ///< the line being read, with its end
    size_t position = 0;  ///< units of `line` already given out
    File(std::FILE* s, std::u16string_view n, bool input)
        : Object(Kind::File), stream(s), name(n), reads(input) {}
    ~File() { close(); }
    void close();
};

/// What vl-catch-all-apply gives back for an error.
struct CaughtError : Object {
    std::u16string message;
    explicit CaughtError(std::u16string_view text) : Object(Kind::CaughtError), message(text) {}
};

inline Cons* Value::cons() const {
    return as<Cons>();
}
inline Symbol* Value::symbol() const {
    return as<Symbol>();
}
inline std::u16string_view Value::text() const {
    return {as<Text>()->units(), as<Text>()->length};
}

Value makeCons(Value car, Value cdr);
Value makeText(std::u16string_view units);
Value makeText(std::u16string_view first, std::u16string_view second);
/// A text of this length, to be filled by the caller before anybody else sees it.
Value makeBlankText(size_t length);
Value makeEntityName(const ads_name name);
template <class... Values>
Value makeList(Value first, Values... rest) {
    if constexpr (sizeof...(Values) == 0) {
        return makeCons(std::move(first), Value());
    } else {
        return makeCons(std::move(first), makeList(std::move(rest)...));
    }
}

/// A list under construction, in order.
class ListBuilder {
  public:
    void add(Value element) {
        Value link = makeCons(std::move(element), Value());
        Cons* cell = link.cons();
        (tail_ ? tail_->cdr : head_) = std::move(link);
        tail_ = cell;
    }
    bool empty() const { return tail_ == nullptr; }
    Cons* tail() const { return tail_; }
    /// The list, ended by `rest` in the place of nil.
    Value take(Value rest = Value()) {
        if (!tail_) return rest;
        tail_->cdr = std::move(rest);
        tail_ = nullptr;
        return std::move(head_);
    }

  private:
    Value head_;
    Cons* tail_ = nullptr;
};

/// Same object; numbers of one type, texts and entity names by value.
bool isEq(const Value& a, const Value& b);
/// Number of elements of a proper list, -1 for anything else.
int32_t listLength(const Value& list);

}  // namespace host::lisp

#endif
